#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/lifetime.hpp"
#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "base/ticket_box.hpp"
#include "orbinel/platform/console.hpp"
#include "orbinel/platform/http.hpp"
#include "orbinel/platform/json.hpp"
#include "session/endpoints.hpp"
#include "session/helper.hpp"
#include "session/session.hpp"
#include "tools/test_devices.hpp"
#include "user/device_attributes.hpp"

namespace orbinel {

/// Shows an integration at work: prints on a test device what operations were called with, and sends it to the
/// vendor's panel while a person there has connected it to this device.
///
/// On the console a feed is one line, its data compact JSON without what JSON cannot hold:
///
///     [ORBINEL][DEBUG][tagEvent]: {"event_name":"seen","timestamp":1767225600,"event_params":{}}
///     [ORBINEL][ERROR][sendError]: {"error":"…"}
///
/// The messages of a session have no colon, and show the JSON text that they carry as JSON:
///
///     [ORBINEL][DEBUG][sessionStartResquest] { "udid": "…", "partner_name": "acme" }
///
/// Feeds go to the panel one after the other, so that it shows them in the order in which they were made; between
/// threads, in the order in which they came here. While the network is slow they wait in memory as JSON, up to 1 MiB
/// together; beyond that the oldest give way, because the person looks at what was done last. A feed that fails is not
/// sent again. A disconnect overtakes what waits and drops it.
///
/// Threads: any; callbacks come on a background thread. `feedData` does not block: it takes no lock but its own and
/// those under which nothing can report (the session record's, the stores').
class IntegrationWizard final : public WizardFeed {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        OrbinelDeviceAttributes& device;
        const TestDevices& testDevices;
        const OrbinelEndpoints& endpoints;
        const Lifetime& lifetime;
        platform::Http& http;
        const platform::Json& json;
        platform::Console& console;
    };

    using Success = std::function<void(bool succeeded)>;

    explicit IntegrationWizard(const Needs& needs);

    /// Connects under the token of a link; without one, under the empty token. Nothing while the library is disabled.
    void initConnection(std::optional<std::string> token) noexcept;

    /// Ends the connection, whether or not there is one. Nothing while the library is disabled.
    void terminateConnection() noexcept;

    [[nodiscard]] bool isConnectionEstablished() const noexcept { return isConnectionEstablished_; }

    [[nodiscard]] bool takesFeeds(bool shouldFeed) const noexcept override;

    /// Prints the data on a test device, and sends it where `shouldFeed` asks for that and the wizard is connected.
    void feedData(Dictionary data, std::string_view methodType, bool isError, bool shouldFeed) noexcept override;

    /// Posts the payload, less what JSON cannot hold, under the token. Successful is the status 200 alone.
    void sendRequest(Dictionary payload, std::string endpoint, const std::optional<std::string>& apiToken,
                     Success success) noexcept;

    /// Prints the message on a test device.
    void putLog(std::string_view methodType, const Dictionary& message, bool isError) noexcept;

    /// Cancels what is under way.
    void cancelAll() { underWay_.cancelAll(); }

private:
    struct Feed {
        std::string body;
        std::string token;
    };

    [[nodiscard]] std::uint64_t beginAttempt(const std::optional<std::string>& token);
    void connected(std::uint64_t attempt);
    [[nodiscard]] std::string endAttempts();
    [[nodiscard]] bool sendsFeeds() const noexcept { return isConnectionEstablished_ && !helper_.sdkDisabled(); }
    void enqueue(std::string body);
    void dropOldest() ORBINEL_REQUIRES(mutex_);
    void sendNextFeed() noexcept;
    [[nodiscard]] std::optional<Feed> takeNextFeed();
    void post(std::string endpoint, std::string body, const std::string& token, Success success);

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    OrbinelDeviceAttributes& device_;
    const TestDevices& testDevices_;
    const OrbinelEndpoints& endpoints_;
    const Lifetime& lifetime_;
    platform::Http& http_;
    const platform::Json& json_;
    platform::Console& console_;
    TicketBox underWay_;

    std::atomic<bool> isConnectionEstablished_{false};  // changed under the mutex, read by every report

    Mutex mutex_;
    std::string token_ ORBINEL_GUARDED_BY(mutex_);
    std::uint64_t attempt_ ORBINEL_GUARDED_BY(mutex_) = 0;  // counts connects and disconnects: an old answer is late
    std::deque<Feed> waiting_ ORBINEL_GUARDED_BY(mutex_);
    std::size_t waitingBytes_ ORBINEL_GUARDED_BY(mutex_) = 0;
    bool feedUnderWay_ ORBINEL_GUARDED_BY(mutex_) = false;
};

}  // namespace orbinel
