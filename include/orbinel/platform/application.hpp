#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "orbinel/platform/delegate.hpp"
#include "orbinel/platform/ticket.hpp"
#include "orbinel/value.hpp"

namespace orbinel::platform {

/// What the platform's package says about the application.
struct ApplicationBundle {
    std::optional<std::string> version;                // as shown to people, such as "2.1.0"
    std::optional<std::string> identifier;             // the package's name, such as "com.acme.shop"
    std::optional<std::string> preferredLocalisation;  // the localisation in use (BCP 47), such as "tr" or "en-GB"
    std::vector<std::string> urlSchemes;               // schemes that open this application, in lower case
    Dictionary information;                            // what the package says beyond, such as how libraries behave
};

enum class ApplicationState { active, inactive, background };

/// The application that the library runs in.
///
/// Threads: callable from any thread; answers are kept by the host, so that nobody waits for the main thread. Opening
/// is for the main thread alone.
class Application {
public:
    virtual ~Application() = default;

    /// Whether the platform may suspend the process as soon as it is in the background. Only then does the library
    /// hold the main thread for a moment while it hands the session over.
    [[nodiscard]] virtual bool backgroundMaySuspend() const noexcept = 0;

    /// Whether the interface stands upright.
    [[nodiscard]] virtual bool isPortrait() const noexcept = 0;

    [[nodiscard]] virtual ApplicationState state() const noexcept = 0;

    [[nodiscard]] virtual ApplicationBundle bundle() const noexcept = 0;

    /// Opens the URL (RFC 3986) outside the application, with whatever the person uses for its scheme. The completion
    /// runs once on the main thread, never inside the call, with whether something took the URL; it may be empty.
    virtual void openUrl(const std::string& url, std::function<void(bool opened)> completion) noexcept = 0;

    /// Opens the application's page in the platform's settings.
    virtual void openSettings() noexcept = 0;

    /// Opens the application's notification settings.
    virtual void openNotificationSettings() noexcept = 0;

    // --- Delegates. What the platform has for the application or for one of its scenes, it performs on the main
    // thread.

    using DelegateObserver = std::function<void(const std::shared_ptr<Delegate>& delegate)>;

    /// Makes the object the application's delegate; null: it has none. Main thread. What its class implements has to
    /// be complete by then. Observers are told of the object inside the call, before it is the delegate; of null they
    /// are not told. The object is kept until another one takes its place.
    virtual void setDelegate(std::shared_ptr<Delegate> delegate) noexcept = 0;

    [[nodiscard]] virtual std::shared_ptr<Delegate> delegate() const noexcept = 0;

    /// Tells the observer, until the ticket is gone, of the application's delegate: inside this call of the present
    /// one, where there is one, and then of each later one.
    [[nodiscard]] virtual Ticket observeDelegate(DelegateObserver observer) noexcept = 0;

    /// Connects a window's scene whose delegate is the object (platforms with scenes tell of it as
    /// "UISceneWillConnectNotification"); null is ignored. Main thread. Observers are told inside the call. The object
    /// is the scene's: the scene is connected as long as somebody keeps it.
    virtual void connectScene(const std::shared_ptr<Delegate>& delegate) noexcept = 0;

    /// Tells the observer, until the ticket is gone, of the delegates of scenes: inside this call of those that are
    /// connected, in the order in which they were, and then of each later one.
    [[nodiscard]] virtual Ticket observeScenes(DelegateObserver observer) noexcept = 0;
};

}  // namespace orbinel::platform
