#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "session/collaborators.hpp"
#include "session/helper.hpp"
#include "session/session.hpp"
#include "user/id_listeners.hpp"

namespace orbinel {

/// The backend's identity for the person who uses the application on this device.
///
/// Threads: any.
class OrbinelIdentity final : public SessionIdentity {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        OrbinelListeners& listeners;
    };

    explicit OrbinelIdentity(const Needs& needs);

    /// The stored ID, or the device's identifier where none is stored. Shows it to the application's extensions.
    [[nodiscard]] std::optional<std::string> getOrbinelID() noexcept override;

    /// Letters, digits, hyphens and dots, the first one a letter or digit, over the whole text.
    [[nodiscard]] bool isOrbinelIdValid(const Value& orbinelId) const noexcept;

    /// What is stored under the ID's key, as it stands.
    [[nodiscard]] Value storedOrbinelId() const noexcept;

    /// Stores a new ID and tells the listeners.
    void setUnifiedOrbinelID(const std::string& orbinelId) noexcept override;
    void removeCachedOrbinelID() noexcept;

    /// Whether an identity request gave no ID and is to be repeated before the next session start.
    [[nodiscard]] bool shouldRetryIdentification() const noexcept;
    void setRetryIdentityRequestStatus(bool retry) noexcept override;

    /// The identifiers of the last login, or an empty dictionary.
    [[nodiscard]] Dictionary getIdentifiers() const noexcept;

    /// The same for the session stop: empty while a retry is pending.
    [[nodiscard]] Dictionary getIdentifiersForStopPayload() noexcept override;

    // Identity requests are not sent yet: these two call their completion at once and leave the ID as it is.
    void resetOrbinelIdWithCompletionBlock(Completion completion) noexcept override;
    void sendIdentityRequestWithCachedIdentifiers(Completion completion) noexcept;

private:
    [[nodiscard]] std::optional<std::string> currentId();
    void mirror(const std::string& orbinelId);

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    OrbinelListeners& listeners_;

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
