#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "base/mutex.hpp"
#include "orbinel/platform/services.hpp"
#include "platform/forwarding_accelerometer.hpp"
#include "platform/forwarding_application.hpp"
#include "platform/forwarding_base64.hpp"
#include "platform/forwarding_console.hpp"
#include "platform/forwarding_defaults.hpp"
#include "platform/forwarding_device.hpp"
#include "platform/forwarding_http.hpp"
#include "platform/forwarding_json.hpp"
#include "platform/forwarding_notifications.hpp"
#include "platform/forwarding_pasteboard.hpp"
#include "platform/forwarding_secure_items.hpp"
#include "platform/forwarding_views.hpp"

namespace orbinel::testing {

/// Counts the calls of every method that can fail, and says which one does: at most one, or each of a method.
///
/// Threads: any.
class Faults {
public:
    static constexpr int always = -1;

    Faults() = default;
    Faults(std::string method, int call) : method_(std::move(method)), call_(call) {}

    bool fails(const std::string& method) {
        const MutexLock lock(mutex_);
        const int call = ++calls_[method];
        const bool now = method == method_ && (call == call_ || call_ == always);
        struck_ |= now;
        return now;
    }
    std::map<std::string, int> calls() const {
        const MutexLock lock(mutex_);
        return calls_;
    }
    bool haveStruck() const {
        const MutexLock lock(mutex_);
        return struck_;
    }

private:
    const std::string method_;
    const int call_ = 0;
    mutable Mutex mutex_;
    std::map<std::string, int> calls_ ORBINEL_GUARDED_BY(mutex_);
    bool struck_ ORBINEL_GUARDED_BY(mutex_) = false;
};

using SharedFaults = std::shared_ptr<Faults>;

inline constexpr const char* brokenOnPurpose = "Broken on purpose.";

/// A host's service in which methods can fail.
template <typename Forwarding, auto service>
class Failing : public Forwarding {
public:
    Failing(const platform::Services& services, SharedFaults faults)
        : Forwarding(services.*service), scheduler_(services.scheduler), faults_(std::move(faults)) {}

protected:
    [[nodiscard]] bool fails(const std::string& method) const { return faults_->fails(method); }

    const std::shared_ptr<platform::Scheduler> scheduler_;
    const SharedFaults faults_;
};

// Each service fails as its header says that it may; what has no failure, such as making base64 or the clock, has none
// here. A method without a result does nothing.

struct FailingHttp final : Failing<platform::ForwardingHttp, &platform::Services::http> {
    using Failing::Failing;

    platform::Ticket send(platform::HttpRequest request, platform::HttpCompletion completion) noexcept override {
        if (fails("http send")) {
            scheduler_->postGlobal([completion = std::move(completion)] {
                completion(platform::HttpFailure{brokenOnPurpose, false});
            });
            return {};
        }
        // Delivered, and the answer lost on its way.
        if (fails("http answer")) {
            return target_->send(std::move(request), [completion = std::move(completion)](const auto&) {
                completion(platform::HttpFailure{brokenOnPurpose, false});
            });
        }
        return target_->send(std::move(request), std::move(completion));
    }
};

struct FailingJson final : Failing<platform::ForwardingJson, &platform::Services::json> {
    using Failing::Failing;

    platform::JsonOutcome parse(std::string_view text) const noexcept override {
        if (fails("json parse")) return platform::JsonFailure{brokenOnPurpose, 0};
        return target_->parse(text);
    }
    std::optional<std::string> serialise(const Value& value, platform::JsonStyle style) const noexcept override {
        return fails("json serialise") ? std::nullopt : target_->serialise(value, style);
    }
    std::optional<std::string> serialise(const Dictionary& value, platform::JsonStyle style) const noexcept override {
        return fails("json serialise") ? std::nullopt : target_->serialise(value, style);
    }
};

struct FailingBase64 final : Failing<platform::ForwardingBase64, &platform::Services::base64> {
    using Failing::Failing;

    std::optional<std::string> decode(std::string_view text) const noexcept override {
        return fails("base64 decode") ? std::nullopt : target_->decode(text);
    }
};

class FailingStore final : public platform::ForwardingDefaultsStore {
public:
    FailingStore(std::shared_ptr<platform::DefaultsStore> target, SharedFaults faults)
        : ForwardingDefaultsStore(std::move(target)), faults_(std::move(faults)) {}

    Value value(std::string_view key) const noexcept override {
        return faults_->fails("defaults value " + std::string(key)) ? Value() : target_->value(key);
    }
    void set(std::string_view key, Value value) noexcept override {
        if (!faults_->fails("defaults set " + std::string(key))) target_->set(key, std::move(value));
    }
    std::vector<std::string> keys() const noexcept override {
        return faults_->fails("defaults keys") ? std::vector<std::string>() : target_->keys();
    }
    void synchronize() noexcept override {
        if (!faults_->fails("defaults synchronize")) target_->synchronize();
    }
    void append(std::string_view key, std::string json) noexcept override {
        if (!faults_->fails("defaults append")) target_->append(key, std::move(json));
    }
    void appendInFlight(std::string_view key, std::string json,
                        std::function<void(std::optional<platform::ElementId>)> committed) noexcept override {
        if (faults_->fails("defaults appendInFlight")) return committed(std::nullopt);
        target_->appendInFlight(key, std::move(json), std::move(committed));
    }
    void take(std::string_view key, std::function<void(std::vector<platform::StoredElement>)> taken) noexcept override {
        if (faults_->fails("defaults take")) return taken({});
        target_->take(key, std::move(taken));
    }
    void count(std::string_view key, std::function<void(std::size_t)> counted) noexcept override {
        if (faults_->fails("defaults count")) return counted(0);
        target_->count(key, std::move(counted));
    }
    void requeue(std::string_view key, platform::ElementId id, std::function<void()> requeued) noexcept override {
        if (faults_->fails("defaults requeue")) return requeued();  // stays in flight until the next launch
        target_->requeue(key, id, std::move(requeued));
    }
    void finish(std::string_view key, platform::ElementId id) noexcept override {
        if (!faults_->fails("defaults finish")) target_->finish(key, id);
    }
    void giveUp(std::string_view key, platform::ElementId id) noexcept override {
        if (!faults_->fails("defaults giveUp")) target_->giveUp(key, id);
    }
    void reclaim(std::string_view key, std::function<void(platform::ReclaimedElements)> reclaimed) noexcept override {
        if (faults_->fails("defaults reclaim")) return reclaimed({});
        target_->reclaim(key, std::move(reclaimed));
    }

private:
    const SharedFaults faults_;
};

struct FailingDefaults final : Failing<platform::ForwardingDefaults, &platform::Services::defaults> {
    using Failing::Failing;

    std::shared_ptr<platform::DefaultsStore> standard() noexcept override { return failing(target_->standard()); }
    std::shared_ptr<platform::DefaultsStore> suite(std::string_view name) noexcept override {
        return failing(target_->suite(name));
    }
    std::shared_ptr<platform::DefaultsStore> appGroup(std::string_view name) noexcept override {
        return failing(target_->appGroup(name));
    }

private:
    std::shared_ptr<platform::DefaultsStore> failing(std::shared_ptr<platform::DefaultsStore> store) {
        return std::make_shared<FailingStore>(std::move(store), faults_);
    }
};

struct FailingSecureItems final : Failing<platform::ForwardingSecureItems, &platform::Services::secureItems> {
    using Failing::Failing;

    std::optional<std::string> find(std::string_view service, std::string_view account) const noexcept override {
        return fails("secure items find") ? std::nullopt : target_->find(service, account);
    }
    bool store(std::string_view service, std::string_view account, std::string_view data) noexcept override {
        return !fails("secure items store") && target_->store(service, account, data);
    }
};

struct FailingApplication final : Failing<platform::ForwardingApplication, &platform::Services::application> {
    using Failing::Failing;

    platform::ApplicationBundle bundle() const noexcept override {
        return fails("application bundle") ? platform::ApplicationBundle() : target_->bundle();
    }
    void openUrl(const std::string& url, std::function<void(bool)> completion) noexcept override {
        if (!fails("application openUrl")) return target_->openUrl(url, std::move(completion));
        scheduler_->postMain([completion = std::move(completion)] {
            if (completion) completion(false);
        });
    }
    std::shared_ptr<platform::Delegate> delegate() const noexcept override {
        return fails("application delegate") ? nullptr : target_->delegate();
    }
};

struct FailingDevice final : Failing<platform::ForwardingDevice, &platform::Services::device> {
    using Failing::Failing;

    std::shared_ptr<const platform::DeviceFacts> facts() const noexcept override {
        return fails("device facts") ? std::make_shared<const platform::DeviceFacts>() : target_->facts();
    }
};

struct FailingNotifications final : Failing<platform::ForwardingNotifications, &platform::Services::notifications> {
    using Failing::Failing;

    void readSettings(std::function<void(platform::NotificationSettings)> completion) noexcept override {
        if (fails("notifications readSettings")) return completion({});
        target_->readSettings(std::move(completion));
    }
    void requestAuthorization(std::int32_t options,
                              std::function<void(std::optional<std::string>)> completion) noexcept override {
        if (fails("notifications requestAuthorization")) return completion(brokenOnPurpose);
        target_->requestAuthorization(options, std::move(completion));
    }
    std::shared_ptr<platform::Delegate> delegate() const noexcept override {
        return fails("notifications delegate") ? nullptr : target_->delegate();
    }
};

struct FailingConsole final : Failing<platform::ForwardingConsole, &platform::Services::console> {
    using Failing::Failing;

    void writeLine(std::string_view line) noexcept override {
        if (!fails("console writeLine")) target_->writeLine(line);
    }
};

struct FailingViews final : Failing<platform::ForwardingViews, &platform::Services::views> {
    using Failing::Failing;

    std::shared_ptr<platform::View> overlay() noexcept override {
        return fails("views overlay") ? nullptr : target_->overlay();
    }
    std::shared_ptr<platform::View> makeView(platform::Backdrop backdrop) noexcept override {
        return fails("views makeView") ? nullptr : target_->makeView(backdrop);
    }
    std::shared_ptr<platform::View> makeCloseButton(std::string name, std::function<void()> pressed) noexcept override {
        if (fails("views makeCloseButton")) return nullptr;
        return target_->makeCloseButton(std::move(name), std::move(pressed));
    }
    platform::WebViewOrReason makeWebView(platform::WebViewSettings settings,
                                          std::weak_ptr<platform::WebViewDelegate> delegate) noexcept override {
        if (fails("views makeWebView")) return brokenOnPurpose;
        return target_->makeWebView(std::move(settings), std::move(delegate));
    }
};

struct FailingAccelerometer final : Failing<platform::ForwardingAccelerometer, &platform::Services::accelerometer> {
    using Failing::Failing;

    bool isAvailable() const noexcept override { return !fails("accelerometer isAvailable") && target_->isAvailable(); }
    platform::Ticket start(std::chrono::milliseconds interval,
                           std::function<void(const platform::AccelerationOrReason&)> handler) noexcept override {
        if (!fails("accelerometer start")) return target_->start(interval, std::move(handler));
        return scheduler_->postMainAfter({}, [handler = std::move(handler)] { handler(brokenOnPurpose); });
    }
};

struct FailingPasteboard final : Failing<platform::ForwardingPasteboard, &platform::Services::pasteboard> {
    using Failing::Failing;

    void setText(const std::string& text) noexcept override {
        if (!fails("pasteboard setText")) target_->setText(text);
    }
};

/// The services, each of which fails where the faults say.
inline platform::Services failing(const platform::Services& services, const SharedFaults& faults) {
    auto all = services;
    all.http = std::make_shared<FailingHttp>(services, faults);
    all.json = std::make_shared<FailingJson>(services, faults);
    all.base64 = std::make_shared<FailingBase64>(services, faults);
    all.defaults = std::make_shared<FailingDefaults>(services, faults);
    all.secureItems = std::make_shared<FailingSecureItems>(services, faults);
    all.application = std::make_shared<FailingApplication>(services, faults);
    all.device = std::make_shared<FailingDevice>(services, faults);
    all.notifications = std::make_shared<FailingNotifications>(services, faults);
    all.console = std::make_shared<FailingConsole>(services, faults);
    all.views = std::make_shared<FailingViews>(services, faults);
    all.accelerometer = std::make_shared<FailingAccelerometer>(services, faults);
    all.pasteboard = std::make_shared<FailingPasteboard>(services, faults);
    return all;
}

}  // namespace orbinel::testing
