#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orbinel/export.hpp"
#include "orbinel/user_activity.hpp"
#include "orbinel/value.hpp"

/// Delegates: the objects by which an application hears from its platform. What a delegate does is told by its class,
/// operation by operation, while the application runs, so that the library can put itself in front of an operation and
/// the application's own implementation keeps running.
namespace orbinel::platform {

/// The operations that a platform performs on delegates, and what each carries of `DelegateArguments`.
namespace delegate_operations {

// On the application's delegate.

/// `deviceToken`.
inline constexpr std::string_view didRegisterForRemoteNotifications =
    "application:didRegisterForRemoteNotificationsWithDeviceToken:";
/// `failure`.
inline constexpr std::string_view didFailToRegisterForRemoteNotifications =
    "application:didFailToRegisterForRemoteNotificationsWithError:";
/// `userInfo`, `completion`.
inline constexpr std::string_view didReceiveRemoteNotificationFetching =
    "application:didReceiveRemoteNotification:fetchCompletionHandler:";
/// `userInfo`.
inline constexpr std::string_view didReceiveRemoteNotification = "application:didReceiveRemoteNotification:";
/// `url`, `options`; answers whether the URL was taken.
inline constexpr std::string_view openUrlWithOptions = "application:openURL:options:";
/// `url`; answers whether the URL was taken.
inline constexpr std::string_view handleOpenUrl = "application:handleOpenURL:";
/// `url`, `sourceApplication`; answers whether the URL was taken.
inline constexpr std::string_view openUrlWithSourceApplication = "application:openURL:sourceApplication:annotation:";
/// `activity`; answers whether the activity was taken.
inline constexpr std::string_view continueUserActivity = "application:continueUserActivity:restorationHandler:";

// On the notification centre's delegate.

/// `userInfo`, `completion`.
inline constexpr std::string_view didReceiveNotificationResponse =
    "userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:";
/// `userInfo`, `completion`; answers yes where the application shows the notification itself.
inline constexpr std::string_view willPresentNotification =
    "userNotificationCenter:willPresentNotification:withCompletionHandler:";

// On a scene's delegate.

/// `urlContexts`.
inline constexpr std::string_view openUrlContexts = "scene:openURLContexts:";

/// What a platform performs on the application's delegate; the last two where that is the notification centre's, too.
inline constexpr std::array onApplication{didRegisterForRemoteNotifications,
                                          didFailToRegisterForRemoteNotifications,
                                          didReceiveRemoteNotificationFetching,
                                          didReceiveRemoteNotification,
                                          openUrlWithOptions,
                                          handleOpenUrl,
                                          openUrlWithSourceApplication,
                                          continueUserActivity,
                                          didReceiveNotificationResponse,
                                          willPresentNotification};

}  // namespace delegate_operations

/// How a delegate tells the platform that it is done.
///
/// Copies are the same handler: whichever is called first tells the platform, and every later call does nothing.
/// Threads: any.
class ORBINEL_API CompletionHandler {
public:
    /// Nobody waits.
    CompletionHandler() noexcept = default;
    explicit CompletionHandler(std::function<void()> handler);

    void operator()() const;

private:
    struct State;

    std::shared_ptr<State> state_;
};

/// Why the push service gave no device token.
struct DelegateFailure {
    std::int64_t code = 0;
    std::string description;
};

/// What the platform hands to a delegate. An operation fills in what it carries and leaves the rest as it is.
struct DelegateArguments {
    std::vector<std::uint8_t> deviceToken;
    DelegateFailure failure;
    Dictionary userInfo;                           // the payload of a notification
    std::string url;                               // RFC 3986
    Dictionary options;                            // of the opening, as the platform has them
    std::optional<std::string> sourceApplication;  // the package's name of whoever opens the URL
    std::vector<std::string> urlContexts;          // URLs (RFC 3986), at least one
    UserActivity activity;
    CompletionHandler completion;
};

/// What an operation answers; nothing where it answers nothing, or is not implemented.
using DelegateResult = std::optional<bool>;

class Delegate;

/// What an operation does for one object. Runs on the thread of whoever performs the operation, the main thread where
/// it is the platform.
using DelegateImplementation = std::function<DelegateResult(Delegate& self, const DelegateArguments& arguments)>;

/// A class of delegates: which operations its objects implement, and how. May be changed at any time; what is
/// performing meanwhile goes on as it began.
///
/// Threads: any. No lock is held while an implementation runs.
class ORBINEL_API DelegateClass {
public:
    /// The name is for logs.
    explicit DelegateClass(std::string name);
    ~DelegateClass();
    DelegateClass(const DelegateClass&) = delete;
    DelegateClass& operator=(const DelegateClass&) = delete;

    [[nodiscard]] const std::string& name() const noexcept;

    /// False, and nothing changes, where the class implements the operation already: also where that is the library's,
    /// so what an application implements has to be there before an object becomes a delegate.
    bool addOperation(std::string_view operation, DelegateImplementation implementation);

    /// Each of the two operations does from now on what the other one did. False, and nothing changes, where the class
    /// does not implement both.
    bool exchangeImplementations(std::string_view one, std::string_view other);

    /// False where the class did not implement the operation.
    bool removeOperation(std::string_view operation);

    [[nodiscard]] bool implements(std::string_view operation) const;

    /// What the operation does now; null where it is not implemented. The same implementation is the same pointer,
    /// under whichever operation.
    [[nodiscard]] std::shared_ptr<const DelegateImplementation> implementation(std::string_view operation) const;

private:
    struct State;

    const std::unique_ptr<State> state_;
};

/// An object that the platform tells what happens. An application may derive from it to keep a state beside; its
/// implementations are given the object.
///
/// Threads: as its class.
class ORBINEL_API Delegate {
public:
    /// The class must not be null.
    explicit Delegate(std::shared_ptr<DelegateClass> type);
    virtual ~Delegate();
    Delegate(const Delegate&) = delete;
    Delegate& operator=(const Delegate&) = delete;

    [[nodiscard]] const std::shared_ptr<DelegateClass>& type() const noexcept { return type_; }
    [[nodiscard]] bool respondsTo(std::string_view operation) const { return type_->implements(operation); }

    /// Does what the class says; nothing where it does not implement the operation. What an implementation throws goes
    /// to the caller.
    DelegateResult perform(std::string_view operation, const DelegateArguments& arguments);

private:
    const std::shared_ptr<DelegateClass> type_;
};

}  // namespace orbinel::platform
