#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/guard.hpp"
#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "session/collaborators.hpp"
#include "session/helper.hpp"
#include "session/session.hpp"
#include "user/id_listeners.hpp"
#include "user/identity_request.hpp"
#include "user/user_attributes.hpp"

namespace orbinel {

/// The backend's identity for the person who uses the application on this device: the Orbinel ID, the identifiers of
/// the last login, and whether the backend still owes an ID for them.
///
/// Threads: any. Answers are applied on the thread on which they come. A late answer never undoes what began after it:
/// see `Change`.
class OrbinelIdentity final : public SessionIdentity {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        OrbinelListeners& listeners;
        IdentityRequest& request;
        OrbinelUserInternal& user;
    };

    explicit OrbinelIdentity(const Needs& needs);

    // --- The Orbinel ID. ---

    /// The stored ID, or the device's identifier where none is stored. Shows it to the application's extensions.
    [[nodiscard]] std::optional<std::string> getOrbinelID() noexcept override;

    /// Letters, digits, hyphens and dots, the first one a letter or digit, over the whole text.
    [[nodiscard]] bool isOrbinelIdValid(const Value& orbinelId) const noexcept;

    /// What is stored under the ID's key, as it stands.
    [[nodiscard]] Value storedOrbinelId() const noexcept;

    /// Stores a new ID and tells the listeners.
    void setUnifiedOrbinelID(const std::string& orbinelId) noexcept override;
    void removeCachedOrbinelID() noexcept;

    // --- The identifiers of the last login. ---

    /// An empty dictionary where there are none. What is stored but no text is left out.
    [[nodiscard]] Dictionary getIdentifiers() const noexcept;

    /// The same for the session stop: empty while a retry is pending.
    [[nodiscard]] Dictionary getIdentifiersForStopPayload() noexcept override;

    /// Whether these are the stored ones; never where none are stored.
    [[nodiscard]] bool areIdentifiersAlreadyCached(const Dictionary& identifiers) const noexcept;

    void storeUserIdentifiers(const Dictionary& identifiers) noexcept;
    void unsetUserIdentifiers() noexcept;

    /// Whether an identity request gave no ID and is to be repeated before the next session start.
    [[nodiscard]] bool shouldRetryIdentification() const noexcept;
    void setRetryIdentityRequestStatus(bool retry) noexcept override;

    // --- Asking the backend. ---

    void sendIdentityRequest(const Dictionary& identifiers, IdentityAnswer success) noexcept;

    /// Applies an answer with the identifiers that it was asked for; without an ID nothing happens.
    void identityRequestSuccessHandler(const std::string& orbinelId, const Dictionary& identifiers) noexcept;

    /// Asks for the ID again, for the stored identifiers or else for nobody in particular. The completion is called
    /// once, whatever the answer, unless the world ends before.
    void resetOrbinelIdWithCompletionBlock(Completion completion) noexcept override;
    void sendIdentityRequestWithCachedIdentifiers(const Completion& completion) noexcept;
    void getBrandNewOrbinelIdWithCompletionBlock(const Completion& completion) noexcept;

    /// Forgets the identifiers and marks the user as logged out. The ID stays until the backend gives another.
    void logoutUser() noexcept;

    // --- The order of changes. ---

    /// Logins and logouts are numbered as they begin. One whose answer comes when a later one has already taken effect
    /// is too late, and is left. When the library asks for the ID again of its own accord, that is no change: its
    /// answer is left where a change has begun or taken effect since, and makes none too late.
    using Change = std::uint64_t;
    [[nodiscard]] Change beginChange() noexcept { return ++lastBegun_; }
    /// To be asked before the change takes effect; false where it is too late.
    [[nodiscard]] bool mayTakeEffect(Change change) noexcept;
    /// Whether this is the change that took effect last.
    [[nodiscard]] bool isInEffect(Change change) const noexcept { return lastInEffect_ == change; }
    /// To be called once a login is in effect: a logout that began after it, and came in between, has the last word.
    void yieldToLogout(Change change) noexcept;

private:
    /// How far the changes had come at some moment.
    struct Order {
        Change begun = 0;
        Change inEffect = 0;
        bool operator==(const Order&) const = default;
    };
    [[nodiscard]] Order order() const noexcept { return {lastBegun_, lastInEffect_}; }

    [[nodiscard]] std::optional<std::string> currentId();
    [[nodiscard]] std::optional<std::string> validId();
    void mirror(const std::string& orbinelId);
    void resolved(const Order& asked, const std::string& orbinelId, const Dictionary& identifiers) noexcept;
    void resolveAgain(const GuardedOperation& operation, std::string_view message, const Dictionary& identifiers,
                      const Completion& completion) noexcept;
    void setIdentifiersAsAttributes(const Dictionary& identifiers);
    void forgetLogin() noexcept;

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    OrbinelListeners& listeners_;
    IdentityRequest& request_;
    OrbinelUserInternal& user_;

    std::atomic<Change> lastBegun_{0};
    std::atomic<Change> lastInEffect_{0};
    std::atomic<Change> lastLogout_{0};

    struct Mirrored {
        std::string group;
        std::string partnerName;
        std::string orbinelId;
        bool operator==(const Mirrored&) const = default;
    };
    Mutex mutex_;
    Mirrored mirrored_ ORBINEL_GUARDED_BY(mutex_);  // what the app group was last given
};

}  // namespace orbinel
