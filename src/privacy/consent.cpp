#include "privacy/consent.hpp"

#include <utility>

#include "base/guard.hpp"
#include "base/number_reading.hpp"
#include "session/stored_keys.hpp"

namespace orbinel {

namespace {

constexpr std::string_view gdprConsentKey = "gdpr_consent";
constexpr std::string_view mobileConsentKey = "mobile_gdpr_consent";

/// Both payloads are reported under this one text.
constexpr const char* payloadOperation = "OrbinelPrivacy - getGDPRPayload";

}  // namespace

OrbinelPrivacy::OrbinelPrivacy(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      session_(needs.session),
      sender_(needs.sender),
      endpoints_(needs.endpoints),
      collaborators_(needs.collaborators) {}

// --- Setting ---

void OrbinelPrivacy::setGDPRConsent(bool consent) noexcept {
    guarded(reports_, "+[Orbinel setGDPRConsent:]", [&] {
        {
            const MutexLock lock(settingMutex_);
            ++timesSet_;
            adoptGdprConsent(consent);
        }
        announceGdprConsent(consent);
    });
}

void OrbinelPrivacy::setMobileGDPRConsent(bool consent) noexcept {
    guarded(reports_, "+[Orbinel setMobileGDPRConsent:]", [&] {
        {
            const MutexLock lock(settingMutex_);
            ++timesSet_;
            adoptMobileConsent(consent);
        }
        announceMobileConsent(consent);
    });
}

void OrbinelPrivacy::adoptGdprConsent(bool consent) {
    helper_.setSessionGdprConsent(consent);
    saveGdprConsent(consent);
}

void OrbinelPrivacy::adoptMobileConsent(bool consent) {
    helper_.setMobileSessionGdprConsent(consent);
    saveMobileConsent(consent);
}

void OrbinelPrivacy::announceGdprConsent(bool consent) noexcept {
    sendGDPRPayload();
    feedConsent("setGDPRConsent", consent);
}

void OrbinelPrivacy::announceMobileConsent(bool consent) noexcept {
    sendMobileGDPRPayload();
    feedConsent("setMobileGDPRConsent", consent);
}

void OrbinelPrivacy::feedConsent(std::string_view methodType, bool consent) noexcept {
    reports_.feedToPanel(methodType, [&] { return Dictionary{{"value", consent}}; });
}

// --- Remembering ---

void OrbinelPrivacy::store(std::string_view key, Value value) {
    helper_.standardStore().set(key, std::move(value));
    helper_.standardStore().synchronize();
}

void OrbinelPrivacy::saveGdprConsent(bool consent) {
    privacyConsent_ = consent;
    store(keys::gdprConsent, consent);
}

void OrbinelPrivacy::saveMobileConsent(bool consent) { store(keys::mobileConsent, consent); }

void OrbinelPrivacy::saveFailedGdprPost(bool consent) noexcept {
    guarded(reports_, "+[OrbinelPrivacy saveFailedGdprPost:]", [&] {
        ++timesFailed_;
        store(keys::savedGdprConsent, consent);
    });
}

Value OrbinelPrivacy::checkGDPRConsent() noexcept {
    return guarded(reports_, "+[OrbinelPrivacy checkGDPRConsent]", Value(), [&] {
        const auto stored = rememberedGdprConsent();
        if (stored.isAbsent()) return stored;
        reports_.feed("checkGDPRConsent", [&] { return Dictionary{{"value", stored.truth() ? "1" : "0"}}; });
        return stored;
    });
}

Value OrbinelPrivacy::rememberedGdprConsent() {
    if (helper_.sdkDisabled()) return {};
    const MutexLock lock(settingMutex_);
    auto stored = helper_.standardStore().value(keys::gdprConsent);
    if (!stored.isAbsent()) privacyConsent_ = stored.truth();
    return stored;
}

Value OrbinelPrivacy::checkFailedGDPRConsent() const noexcept {
    return guarded(reports_, "+[OrbinelPrivacy checkFailedGDPRConsent]", Value(), [&] {
        return helper_.sdkDisabled() ? Value() : helper_.standardStore().value(keys::savedGdprConsent);
    });
}

bool OrbinelPrivacy::checkCurrentGDPRConsent() noexcept {
    return guarded(reports_, "+[OrbinelPrivacy checkCurrentGDPRConsent]", true, [&] {
        if (!checkGDPRConsent().isAbsent()) return privacyConsent_.load();
        const auto waiting = checkFailedGDPRConsent();
        const MutexLock lock(settingMutex_);
        const bool isSetMeanwhile = !helper_.standardStore().value(keys::gdprConsent).isAbsent();
        if (!waiting.isAbsent() && !isSetMeanwhile) privacyConsent_ = waiting.truth();
        return privacyConsent_.load();
    });
}

bool OrbinelPrivacy::checkCurrentMobileConsent() const noexcept {
    return guarded(reports_, "+[OrbinelPrivacy checkCurrentMobileConsent]", true, [&] {
        const auto stored = helper_.standardStore().value(keys::mobileConsent);
        return stored.isAbsent() || stored.truth();
    });
}

// --- In the course of a launch ---

void OrbinelPrivacy::adoptRememberedConsents() noexcept {
    static_cast<void>(checkCurrentGDPRConsent());  // into memory
    const MutexLock lock(settingMutex_);
    helper_.setSessionGdprConsent(privacyConsent_);
    helper_.setMobileSessionGdprConsent(checkCurrentMobileConsent());
}

std::uint32_t OrbinelPrivacy::timesSet() {
    const MutexLock lock(settingMutex_);
    return timesSet_;
}

void OrbinelPrivacy::importOrResendConsent() noexcept {
    if (checkGDPRConsent().isAbsent()) importGDPRPayload();
    if (!checkFailedGDPRConsent().isAbsent()) sendCachedGDPRPayload();
}

// --- The privacy service ---

void OrbinelPrivacy::sendGDPRPayload() noexcept {
    guarded(reports_, "+[OrbinelPrivacy sendGDPRPayload]",
            [&] { post(getGDPRPayload(), gdprPosts_, &OrbinelPrivacy::sendGDPRPayload); });
}

void OrbinelPrivacy::sendMobileGDPRPayload() noexcept {
    guarded(reports_, "+[OrbinelPrivacy sendMobileGDPRPayload]",
            [&] { post(getMobileGDPRPayload(), mobilePosts_, &OrbinelPrivacy::sendMobileGDPRPayload); });
}

void OrbinelPrivacy::post(Dictionary payload, Posts& posts, Post again) {
    sender_.sendRequest(std::move(payload), endpoints_.sendGDPRConsent(), underWay(posts, again));
}

/// Counts a post that is about to leave; what it gives is called when that post has ended. Posts that are under way at
/// once may arrive in any order: when the last of them has ended, the consent that is in force then is posted once
/// more.
Answer OrbinelPrivacy::underWay(Posts& posts, Post again) {
    const MutexLock lock(settingMutex_);
    if (posts.underWay++ > 0) posts.overlapped = true;
    return [this, &posts, again](const Value&) {
        {
            const MutexLock ending(settingMutex_);
            if (--posts.underWay > 0 || !std::exchange(posts.overlapped, false)) return;
        }
        (this->*again)();
    };
}

void OrbinelPrivacy::sendCachedGDPRPayload() noexcept {
    guarded(reports_, "+[OrbinelPrivacy sendCachedGDPRPayload]", [&] {
        const auto taken = [this, failed = timesFailed_.load()] {
            if (failed == timesFailed_) store(keys::savedGdprConsent, {});
        };
        sender_.sendUntilTaken(getGDPRPayload(), endpoints_.sendGDPRConsent(), taken,
                               underWay(gdprPosts_, &OrbinelPrivacy::sendGDPRPayload));
    });
}

void OrbinelPrivacy::importGDPRPayload() noexcept {
    guarded(reports_, "+[OrbinelPrivacy importGDPRPayload]", [&] {
        auto payload = getGDPRPayload();
        payload.erase(gdprConsentKey);
        sender_.sendRequest(std::move(payload), endpoints_.getGDPRConsent(),
                            [this, asked = timesSet()](const Value& answer) { adoptImported(answer, asked); });
    });
}

/// As if the application had set both: a missing one counts as withheld. What the application itself has set since the
/// backend was asked stays.
void OrbinelPrivacy::adoptImported(const Value& answer, std::uint32_t asked) {
    const auto* consents = answer.ifDictionary();
    if (consents == nullptr) return;
    const bool gdpr = boolValue((*consents)[gdprConsentKey]).value_or(false);
    const bool mobile = boolValue((*consents)[mobileConsentKey]).value_or(false);
    bool inTime = false;
    {
        const MutexLock lock(settingMutex_);
        inTime = asked == timesSet_;
        if (inTime) {
            adoptGdprConsent(gdpr);
            adoptMobileConsent(mobile);
        }
    }
    if (!inTime) return reports_.note("Left the backend's consent: the application has set one meanwhile.");
    announceGdprConsent(gdpr);
    announceMobileConsent(mobile);
}

Dictionary OrbinelPrivacy::getGDPRPayload() noexcept {
    return guarded(reports_, {payloadOperation, DescriptionForm::nameOnly}, Dictionary(),
                   [&] { return makePayload(gdprConsentKey, privacyConsent_.load()); });
}

Dictionary OrbinelPrivacy::getMobileGDPRPayload() noexcept {
    return guarded(reports_, {payloadOperation, DescriptionForm::nameOnly}, Dictionary(),
                   [&] { return makePayload(mobileConsentKey, helper_.standardStore().value(keys::mobileConsent)); });
}

/// The payload ends at the first value that is missing: nothing after it is sent.
Dictionary OrbinelPrivacy::makePayload(std::string_view consentKey, Value consent) {
    Dictionary payload;
    const auto partner = session_.partnerName();
    if (partner.empty()) return payload;
    payload.set("partner_name", partner);
    if (consent.isAbsent()) return payload;
    payload.set(consentKey, std::move(consent));
    Dictionary target;
    if (auto udid = helper_.getUdid()) target.set("udid", std::move(*udid));
    payload.set("target", std::move(target));
    if (auto orbinelId = collaborators_.identity->getOrbinelID()) payload.set("orbinel_id", std::move(*orbinelId));
    return payload;
}

}  // namespace orbinel
