#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "orbinel/event.hpp"
#include "orbinel/export.hpp"
#include "orbinel/optional_text.hpp"
#include "orbinel/platform/services.hpp"
#include "orbinel/target_action.hpp"
#include "orbinel/value.hpp"

/// The library's public surface.
///
/// An application makes the library once with `start`, initialises it with `Orbinel::initWithLaunchOptions`, and from
/// then on reports what happens. The platform's notifications open and close sessions; nothing here does.
///
/// Every operation is `noexcept` and may be called at any time and from any thread: before `start` and after
/// `shutdown` it does nothing and returns its neutral value. "Gated" operations also do nothing while a consent is
/// withheld or the backend has switched the library off.
namespace orbinel {

/// Makes the library over the given services. False, with one sentence on the console, where a service is missing or
/// the library is already started. Sends nothing. Call it on the main thread.
ORBINEL_API bool start(platform::Services services) noexcept;

/// Ends the library: cancels what is under way (session stops among it are sent at the next launch), waits at most one
/// second for what is running on other threads, and leaves nothing running. It may be started again afterwards.
ORBINEL_API void shutdown() noexcept;

class ORBINEL_API Orbinel {
public:
    Orbinel() = delete;

    // --- Initialisation ---

    /// Initialises the library, once per launch and early in it.
    ///
    /// `launchOptions`: what the platform handed to the application at launch. `partnerName`: the account's name at the
    /// vendor, of two or more lower-case ASCII letters, digits and underscores, not beginning with an underscore; with
    /// any other name the library stays uninitialised. `appGroup`: the name of the store shared with the application's
    /// extensions. `customEndpoint`: the origin of the API (RFC 3986 scheme, host and port, without a trailing slash);
    /// the empty text stands for the default origin.
    static void initWithLaunchOptions(const std::optional<Dictionary>& launchOptions, OptionalText partnerName,
                                      OptionalText appGroup) noexcept;
    static void initWithLaunchOptions(const std::optional<Dictionary>& launchOptions, OptionalText partnerName,
                                      OptionalText appGroup, OptionalText customEndpoint) noexcept;

    /// The common core of both, for cross-platform wrappers.
    static void initSDK(OptionalText partnerName, const std::optional<Dictionary>& launchOptions) noexcept;

    /// Switches to another partner name: closes the session under the old one and opens one under the new. Refused
    /// (with a record in the diagnostic log) before initialisation, with the name already in force, with a name that is
    /// not valid, and while the library is switched off.
    static void reinitWithPartnerName(OptionalText partnerName) noexcept;

    /// Whether the value is a text that may be a partner name.
    [[nodiscard]] static bool partnerNameIsValid(const Value& partnerName) noexcept;

    /// Leaves out automatic integration; to be called before initialisation.
    static void disableAutoIntegration() noexcept;

    /// For cross-platform wrappers: their own version, and the notification that the application became active where
    /// the wrapper delivers it itself.
    static void setHybridSDKVersion(OptionalText version) noexcept;
    static void hybridApplicationDidBecomeActive() noexcept;

    // --- Events ---

    /// A new event of that name; while the gate is closed, an event with the empty name, which records nothing. Gated.
    [[nodiscard]] static OrbinelEvent tagEvent(OptionalText name) noexcept;

    /// Records that the person signed up. Gated.
    static void signUpConfirmation() noexcept;

    // --- The user ---

    /// The backend's identifier for the person on this device; nothing while the gate is closed. Gated.
    [[nodiscard]] static std::optional<std::string> getOrbinelID() noexcept;

    /// Performs `selector` (a member function of the sender that takes a `const std::string&`, or a function that takes
    /// the sender and that) whenever the Orbinel ID changes, on whichever thread changes it. The sender is held weakly;
    /// registering it again replaces its selector. Gated.
    template <typename Selector, typename Sender>
    static void registerOrbinelIDListenerWithSelector(Selector selector, std::weak_ptr<Sender> sender) noexcept {
        setIdListener(TargetAction<const std::string&>(std::move(sender), std::move(selector)));
    }

    // --- Callbacks ---

    /// Performs `selector` (a member function of the sender that takes a `const Dictionary&`, or a function that takes
    /// the sender and that) on the main queue with {"type", "data"} when something happened: type 6, without data,
    /// when a session start completed. The sender is held weakly; a registration replaces the one before.
    template <typename Selector, typename Sender>
    static void registerOrbinelCallbackWithSelector(Selector selector, std::weak_ptr<Sender> sender) noexcept {
        setCallback(TargetAction<const Dictionary&>(std::move(sender), std::move(selector)));
    }

    // --- Diagnosis ---

    /// Hands an application's own failure to the crash handler: what happened, and where.
    static void sendError(OptionalText error, OptionalText desc) noexcept;

    /// The library's version, such as "13.9.0".
    [[nodiscard]] static std::string getSDKVersion() noexcept;

    /// Writes on the console what the library does, and what it drops and why. Off at every start; never sent.
    static void setDevelopmentLog(bool on) noexcept;

private:
    static void setIdListener(TargetAction<const std::string&> listener) noexcept;
    static void setCallback(TargetAction<const Dictionary&> callback) noexcept;
};

}  // namespace orbinel
