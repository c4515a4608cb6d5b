#pragma once

#include <atomic>
#include <optional>
#include <string>

#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "session/endpoints.hpp"
#include "session/helper.hpp"
#include "session/request_sender.hpp"
#include "session/session.hpp"

namespace orbinel {

/// Makes this device a test device, which a link of the vendor's panel asks for: on it the library tells the console
/// what it does.
///
/// Threads: any.
class TestDevices {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        const OrbinelEndpoints& endpoints;
        OrbinelRequest& sender;
    };

    explicit TestDevices(const Needs& needs);

    /// The token of a link, until the application becomes active and registers the device under it.
    void setTestDeviceToken(std::optional<std::string> token) noexcept;
    [[nodiscard]] std::optional<std::string> testDeviceToken() const noexcept;

    /// Registers the device where a token waits: a step of becoming active.
    void addWaitingTestDevice() noexcept;

    /// Makes the device a test device, whatever the backend answers, and registers it there. The token waits no longer.
    void addTestDevice(const std::string& token) noexcept;

    void markDeviceAsDebug() noexcept;

    /// Asked for every report: the stored mark is read once, at the first call, and then only an atomic.
    [[nodiscard]] bool isTestDevice() const noexcept;

private:
    enum class Mark { unread, absent, present };

    void forgetToken(const std::string& token);

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    const OrbinelEndpoints& endpoints_;
    OrbinelRequest& sender_;

    mutable std::atomic<Mark> mark_{Mark::unread};

    mutable Mutex mutex_;
    std::optional<std::string> testDeviceToken_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel
