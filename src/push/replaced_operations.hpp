#pragma once

#include <cstddef>
#include <exception>
#include <optional>
#include <span>
#include <string_view>

#include "base/guard.hpp"
#include "base/reports.hpp"
#include "orbinel/platform/console.hpp"
#include "orbinel/platform/delegate.hpp"
#include "orbinel/value.hpp"
#include "push/device_token.hpp"
#include "push/push.hpp"
#include "push/universal_links.hpp"
#include "tools/auto_integration.hpp"
#include "tools/tool_links.hpp"

namespace orbinel {

class ReplacedOperations;

/// One operation of a delegate that the library puts itself in front of, and what it does there: it forwards what it
/// learnt and leaves a diagnostic record.
struct Replacement {
    using Arguments = platform::DelegateArguments;

    std::string_view operation;
    std::string_view name;                  // under which the application's own implementation is found meanwhile
    std::optional<std::size_t> swizzler{};  // the switch that leaves it out; absent: it is always replaced

    GuardedOperation guard;
    std::string_view record;  // the message
    LogLevel level = LogLevel::info;
    Dictionary (*attributes)(const Arguments& arguments) = nullptr;  // of the record; nullptr: none
    bool recordFirst = false;                                        // before the application's own implementation
    bool answers = false;                                            // no, where the application does not

    void (ReplacedOperations::*forward)(const Arguments& arguments);
};

/// What the library does in the operations that it has replaced. Nothing is thrown.
///
/// Threads: any, the main thread as a rule.
class ReplacedOperations {
public:
    using Arguments = platform::DelegateArguments;

    struct Needs {
        Reports& reports;
        const AutoIntegration& automaticIntegration;
        ToolLinks& toolLinks;
        DeviceToken& deviceToken;
        UniversalLinks& universalLinks;
        OrbinelPush& push;
        platform::Console& console;
    };

    explicit ReplacedOperations(const Needs& needs);

    /// Of the application's delegate, in the order in which they are installed. It gets those of the notification
    /// centre's delegate, too, behind its own.
    [[nodiscard]] static std::span<const Replacement> ofApplication() noexcept;

    /// Of the notification centre's delegate.
    [[nodiscard]] static std::span<const Replacement> ofNotificationCentre() noexcept;

    [[nodiscard]] static const Replacement& ofScene() noexcept;

    void beforeOwn(const Replacement& replacement, const Arguments& arguments) noexcept;

    /// `failure` is what the application's own implementation threw: it is reported, and nothing is forwarded.
    void afterOwn(const Replacement& replacement, const Arguments& arguments,
                  const std::exception_ptr& failure) noexcept;

private:
    void leaveRecord(const Replacement& replacement, const Arguments& arguments);

    // How each forwards.
    void takeDeviceToken(const Arguments& arguments);
    void tellFailure(const Arguments& arguments);
    void handlePush(const Arguments& arguments);
    void handleForegroundPush(const Arguments& arguments);
    void handleUrl(const Arguments& arguments);
    void handleFirstContext(const Arguments& arguments);
    void handleActivity(const Arguments& arguments);

    Reports& reports_;
    const AutoIntegration& automaticIntegration_;
    ToolLinks& toolLinks_;
    DeviceToken& deviceToken_;
    UniversalLinks& universalLinks_;
    OrbinelPush& push_;
    platform::Console& console_;
};

}  // namespace orbinel
