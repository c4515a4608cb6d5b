#pragma once

#include <atomic>
#include <cstdint>
#include <string_view>

#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "session/collaborators.hpp"
#include "session/endpoints.hpp"
#include "session/helper.hpp"
#include "session/request_sender.hpp"
#include "session/session.hpp"

namespace orbinel {

/// Whether the person consents to the processing of data: two switches, remembered on the device, reported to the
/// vendor's privacy service and copied into the flags of the gate.
///
/// Nothing here passes the gate: consent is what opens it. Threads: any.
class OrbinelPrivacy final : public FailedConsent {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        OrbinelRequest& sender;
        const OrbinelEndpoints& endpoints;
        SessionCollaborators& collaborators;
    };

    explicit OrbinelPrivacy(const Needs& needs);

    // --- What the application calls. ---

    void setGDPRConsent(bool consent) noexcept;
    void setMobileGDPRConsent(bool consent) noexcept;

    // --- What the library calls in the course of a launch. ---

    /// At the start: sets the gate's flags to the consents that are remembered.
    void adoptRememberedConsents() noexcept;

    /// When the application has become active: asks the backend for the consent where the application never set one on
    /// this device, and then sends a consent again whose post failed.
    void importOrResendConsent() noexcept;

    // --- The consents. ---

    /// Remembers a consent whose post did not reach the backend.
    void saveFailedGdprPost(bool consent) noexcept override;

    /// What is stored, as it stands; absent where nothing is, and while the backend has switched the library off. The
    /// first also takes the stored consent into memory.
    [[nodiscard]] Value checkGDPRConsent() noexcept;
    [[nodiscard]] Value checkFailedGDPRConsent() const noexcept;

    /// The consents in force: what is stored, else one that waits to be sent again, else the one in memory; without
    /// any of them, given.
    [[nodiscard]] bool checkCurrentGDPRConsent() noexcept;
    [[nodiscard]] bool checkCurrentMobileConsent() const noexcept;

    // --- The privacy service. ---

    void sendGDPRPayload() noexcept;
    void sendMobileGDPRPayload() noexcept;
    void sendCachedGDPRPayload() noexcept;
    void importGDPRPayload() noexcept;

    [[nodiscard]] Dictionary getGDPRPayload() noexcept;
    [[nodiscard]] Dictionary getMobileGDPRPayload() noexcept;

private:
    struct Posts {
        int underWay = 0;
        bool overlapped = false;
    };
    using Post = void (OrbinelPrivacy::*)() noexcept;

    void store(std::string_view key, Value value);
    void post(Dictionary payload, Posts& posts, Post again);
    [[nodiscard]] Answer underWay(Posts& posts, Post again);
    [[nodiscard]] Value rememberedGdprConsent();
    [[nodiscard]] std::uint32_t timesSet();
    [[nodiscard]] Dictionary makePayload(std::string_view consentKey, Value consent);
    void saveGdprConsent(bool consent) ORBINEL_REQUIRES(settingMutex_);
    void saveMobileConsent(bool consent) ORBINEL_REQUIRES(settingMutex_);
    void adoptGdprConsent(bool consent) ORBINEL_REQUIRES(settingMutex_);
    void adoptMobileConsent(bool consent) ORBINEL_REQUIRES(settingMutex_);
    void announceGdprConsent(bool consent) noexcept;
    void announceMobileConsent(bool consent) noexcept;
    void feedConsent(std::string_view methodType, bool consent) noexcept;
    void adoptImported(const Value& answer, std::uint32_t asked);

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    OrbinelRequest& sender_;
    const OrbinelEndpoints& endpoints_;
    SessionCollaborators& collaborators_;

    std::atomic<bool> privacyConsent_{true};

    // Keeps the gate's flag and what is stored in step, whoever sets them at once. The store neither waits nor calls
    // back.
    Mutex settingMutex_;
    std::uint32_t timesSet_ ORBINEL_GUARDED_BY(settingMutex_) = 0;
    Posts gdprPosts_;    // guarded by the mutex, too: the analysis cannot follow references
    Posts mobilePosts_;  // the same

    // How often a post failed: a resend that was sent before that says nothing of what came after it.
    std::atomic<std::uint32_t> timesFailed_{0};
};

}  // namespace orbinel
