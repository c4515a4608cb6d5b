#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/orbinel/play/device_facts.hpp"
#include "apps/orbinel/play/host_delegates.hpp"
#include "apps/orbinel/play/not_carried_out.hpp"
#include "apps/orbinel/play/play_interface.hpp"
#include "apps/orbinel/play/remembering_secure_items.hpp"
#include "apps/orbinel/play/scenario.hpp"
#include "apps/orbinel/play/trace.hpp"
#include "apps/orbinel/play/traced_http.hpp"
#include "apps/orbinel/play/traced_presentation.hpp"
#include "hosts/linux/sqlite_defaults.hpp"
#include "orbinel/headless/headless_scheduler.hpp"
#include "orbinel/platform/services.hpp"

namespace orbinel::tool {

/// The clock of a scenario: a virtual one that begins there, or the real one.
[[nodiscard]] std::shared_ptr<headless::HeadlessScheduler> makeScheduler(const std::optional<double>& clockStart);

/// The platform of a play: HTTP and storage of Linux, the views of an interface, everything
/// else in memory; and the library that runs on it.
///
/// Threads: made, used and ended on the scheduler's main thread.
class PlayHost {
public:
    /// The trace must outlive it. The directory must be there. Throws `Unusable` where there is no such interface.
    PlayHost(std::shared_ptr<headless::HeadlessScheduler> scheduler, bool isVirtual, std::filesystem::path directory,
             Trace& trace, Interface interface);
    ~PlayHost();
    PlayHost(const PlayHost&) = delete;
    PlayHost& operator=(const PlayHost&) = delete;

    void changeDevice(const std::vector<FactChange>& changes);
    void write(const Preset& preset);

    /// Makes the library, and then the application's delegates, as a new process does.
    void launch(const HostDescription& host);

    /// Ends the library in order.
    void end();

    /// Lets the library go as the kill of its process does: what has not been synchronised is lost.
    void kill();

    /// Posts the notification; those of the lifecycle change the application's state before.
    void post(std::string_view notification, const Dictionary& info);

    /// Performs on the application's delegates what the platform has for it.
    void deliver(const Delivery& delivery);

    /// Runs due work until none is left, and waits for what the stores have been asked for, whose completions may begin
    /// requests: nothing but HTTP and the clock is then left to wait for.
    void drain();

    /// Drains until no request is in flight, those with a URL that contains an ignored part aside; false when the limit
    /// (real time) comes first.
    [[nodiscard]] bool settle(std::chrono::milliseconds limit, const std::vector<std::string>& ignoredUrlParts = {});

    /// Drains until the condition, asked after each change, holds; false when the limit (real time) comes first.
    [[nodiscard]] bool drainUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);

    /// Runs the due work of the queues alone, then waits for more of it, for a moment at most.
    void turn();

    /// Delivers one sample of the accelerometer, in g.
    void shake(const platform::Acceleration& acceleration);

    /// Whether requests were sent and failed, and none was answered.
    [[nodiscard]] bool isUnanswered() const { return http_->isUnanswered(); }

    [[nodiscard]] PlayInterface& interface() { return *interface_; }
    [[nodiscard]] headless::HeadlessScheduler& scheduler() { return *scheduler_; }
    [[nodiscard]] const RememberingSecureItems& secureItems() const { return *secureItems_; }

private:
    [[nodiscard]] std::unique_ptr<PlayInterface> makeInterface(Interface interface);
    [[nodiscard]] platform::Services services() const;
    void waitForCancelledRequests();

    const std::shared_ptr<headless::HeadlessScheduler> scheduler_;
    const std::filesystem::path directory_;
    const std::shared_ptr<platform::Json> json_;
    const std::shared_ptr<platform::Base64> base64_;
    const std::shared_ptr<TracedHttp> http_;
    std::shared_ptr<hosts::SqliteDefaults> defaults_;  // made anew after a kill
    const std::shared_ptr<RememberingSecureItems> secureItems_;
    const std::shared_ptr<platform::NotificationCentre> notificationCentre_;
    const std::shared_ptr<headless::HeadlessApplication> application_;
    const std::shared_ptr<headless::HeadlessDevice> device_;
    const std::shared_ptr<headless::HeadlessNotifications> notifications_;
    const std::shared_ptr<platform::Console> console_;
    const std::unique_ptr<PlayInterface> interface_;
    const std::shared_ptr<headless::HeadlessAccelerometer> accelerometer_;
    std::optional<HostDelegates> delegates_;  // of the process that runs
    Trace& trace_;
    TracedPresentation presentation_;
};

}  // namespace orbinel::tool
