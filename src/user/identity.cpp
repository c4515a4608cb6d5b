#include "user/identity.hpp"

#include <algorithm>

#include "base/ascii.hpp"
#include "base/guard.hpp"
#include "events/data_types.hpp"
#include "session/stored_keys.hpp"
#include "user/attribute_codes.hpp"

namespace orbinel {

namespace {

bool hasFormOfId(std::string_view text) noexcept {
    return !text.empty() && ascii::isLetterOrDigit(text.front()) && std::all_of(text.begin(), text.end(), [](char c) {
        return ascii::isLetterOrDigit(c) || c == '-' || c == '.';
    });
}

}  // namespace

OrbinelIdentity::OrbinelIdentity(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      session_(needs.session),
      listeners_(needs.listeners),
      request_(needs.request),
      user_(needs.user) {}

// --- The Orbinel ID ---

Value OrbinelIdentity::storedOrbinelId() const noexcept {
    return guarded(reports_, "-[OrbinelIdentity storedOrbinelId]", Value(),
                   [&] { return helper_.standardStore().value(keys::orbinelId); });
}

std::optional<std::string> OrbinelIdentity::getOrbinelID() noexcept {
    return guarded(reports_, "-[OrbinelIdentity getOrbinelID]", std::optional<std::string>(), [&] {
        auto current = currentId();
        // Again where the ID changed while an older one was being shown.
        for (auto shown = current; shown;) {
            mirror(*shown);
            const auto now = currentId();
            if (now == shown) break;
            shown = now;
        }
        return current;
    });
}

std::optional<std::string> OrbinelIdentity::currentId() {
    const auto stored = storedOrbinelId();
    return stored.stringOrEmpty().empty() ? helper_.getUdid() : std::optional(stored.stringOrEmpty());
}

/// Shows the ID and the partner to the application's extensions, where it is not what they were shown last.
void OrbinelIdentity::mirror(const std::string& orbinelId) {
    const Mirrored wanted{helper_.getAppGroup().value_or(std::string()), session_.partnerName(), orbinelId};
    if (wanted.group.empty()) return;
    {
        const MutexLock lock(mutex_);
        if (mirrored_ == wanted) return;
    }
    const auto group = helper_.appGroupStore();
    if (group == nullptr) return;
    const MutexLock lock(mutex_);  // so that the last one who writes is the last one who says what was written
    if (mirrored_ == wanted) return;
    group->set(keys::partnerName, wanted.partnerName);
    group->set(keys::orbinelId, wanted.orbinelId);
    group->synchronize();
    mirrored_ = wanted;
}

bool OrbinelIdentity::isOrbinelIdValid(const Value& orbinelId) const noexcept {
    const bool valid = hasFormOfId(orbinelId.stringOrEmpty());
    reports_.log(LogType::inapp, LogLevel::info, "Received request to validate current orbinel id.", [&] {
        return Dictionary{{"orbinelId", orbinelId.isAbsent() ? Value("") : orbinelId}, {"isValid", valid ? "1" : "0"}};
    });
    return valid;
}

void OrbinelIdentity::setUnifiedOrbinelID(const std::string& orbinelId) noexcept {
    guarded(reports_, "-[OrbinelIdentity setUnifiedOrbinelID:]", [&] {
        helper_.standardStore().set(keys::orbinelId, orbinelId);
        helper_.standardStore().synchronize();
        reports_.log(LogType::inapp, LogLevel::info, "Saved orbinel id.", [&] {
            return Dictionary{{"orbinel_id", orbinelId}};
        });
        listeners_.triggerOrbinelIDListenersWithOrbinelID(orbinelId);
    });
}

void OrbinelIdentity::removeCachedOrbinelID() noexcept {
    guarded(reports_, "-[OrbinelIdentity removeCachedOrbinelID]", [&] {
        helper_.standardStore().set(keys::orbinelId, {});
        helper_.standardStore().synchronize();
        reports_.feed("removeCachedOrbinelID", [] {
            return Dictionary{{"value", "Cached OrbinelID has been removed."}};
        });
    });
}

// --- The identifiers ---

Dictionary OrbinelIdentity::getIdentifiers() const noexcept {
    return guarded(reports_, "-[OrbinelIdentity getIdentifiers]", Dictionary(), [&] {
        auto stored = helper_.standardStore().value(keys::userIdentifiers);
        auto* identifiers = stored.ifDictionary();
        if (identifiers == nullptr) return Dictionary();
        identifiers->eraseIf([](const Dictionary::Entry& entry) { return entry.second.ifString() == nullptr; });
        return std::move(*identifiers);
    });
}

Dictionary OrbinelIdentity::getIdentifiersForStopPayload() noexcept {
    return shouldRetryIdentification() ? Dictionary() : getIdentifiers();
}

bool OrbinelIdentity::areIdentifiersAlreadyCached(const Dictionary& identifiers) const noexcept {
    const auto cached = getIdentifiers();
    return !cached.empty() && cached == identifiers;
}

void OrbinelIdentity::storeUserIdentifiers(const Dictionary& identifiers) noexcept {
    guarded(reports_, "-[OrbinelIdentity storeUserIdentifiers:]", [&] {
        helper_.standardStore().set(keys::userIdentifiers, identifiers);
        helper_.standardStore().synchronize();
    });
}

void OrbinelIdentity::unsetUserIdentifiers() noexcept {
    guarded(reports_, "-[OrbinelIdentity unsetUserIdentifiers]", [&] {
        helper_.standardStore().set(keys::userIdentifiers, {});
        helper_.standardStore().synchronize();
    });
}

bool OrbinelIdentity::shouldRetryIdentification() const noexcept {
    return guarded(reports_, "-[OrbinelIdentity shouldRetryIdentification]", false,
                   [&] { return helper_.standardStore().value(keys::retryIdentityRequest).truth(); });
}

void OrbinelIdentity::setRetryIdentityRequestStatus(bool retry) noexcept {
    guarded(reports_, "-[OrbinelIdentity setRetryIdentityRequestStatus:]", [&] {
        helper_.standardStore().set(keys::retryIdentityRequest, retry);
        helper_.standardStore().synchronize();
    });
}

// --- Asking the backend ---

std::optional<std::string> OrbinelIdentity::validId() {
    auto current = getOrbinelID();
    if (!isOrbinelIdValid(current)) current.reset();
    return current;
}

void OrbinelIdentity::sendIdentityRequest(const Dictionary& identifiers, IdentityAnswer success) noexcept {
    const GuardedOperation operation("-[OrbinelIdentity sendIdentityRequest:success:]");
    const bool asked = guarded(reports_, operation, [&] { request_.send(identifiers, validId(), success); });
    if (!asked) guarded(reports_, operation, [&] { success({}); });
}

void OrbinelIdentity::identityRequestSuccessHandler(const std::string& orbinelId,
                                                    const Dictionary& identifiers) noexcept {
    guarded(reports_, "-[OrbinelIdentity identityRequestSuccessHandler:identifiers:]", [&] {
        if (orbinelId.empty()) return;
        reports_.log(LogType::common, LogLevel::info, "Login success.");
        user_.setLoginStatus(true);
        setUnifiedOrbinelID(orbinelId);
        setRetryIdentityRequestStatus(false);
        if (!identifiers.empty()) setIdentifiersAsAttributes(identifiers);
        reports_.feed("setUserIdentifierSuccess", [&] { return Dictionary{{"orbinelID", orbinelId}}; });
    });
}

void OrbinelIdentity::setIdentifiersAsAttributes(const Dictionary& identifiers) {
    namespace codes = attribute_codes;
    for (const auto& [key, value] : identifiers) {
        if (key == codes::EMAIL || key == codes::PHONE_NUMBER || key == codes::UUID) {
            user_.setUserAttributeWithString(key, value.stringOrEmpty());
        } else {
            user_.setCustomAttributeWithString(removeCustomPrefix(key), value.stringOrEmpty());
        }
    }
    reports_.feedToPanel("setUserIdentifier", [&] { return identifiers; });
}

void OrbinelIdentity::resetOrbinelIdWithCompletionBlock(Completion completion) noexcept {
    if (getIdentifiers().empty()) return getBrandNewOrbinelIdWithCompletionBlock(completion);
    sendIdentityRequestWithCachedIdentifiers(completion);
}

void OrbinelIdentity::sendIdentityRequestWithCachedIdentifiers(const Completion& completion) noexcept {
    resolveAgain("-[OrbinelIdentity sendIdentityRequestWithCachedIdentifiers]",
                 "Getting correct orbinelId for logged in user.", getIdentifiers(), completion);
}

void OrbinelIdentity::getBrandNewOrbinelIdWithCompletionBlock(const Completion& completion) noexcept {
    resolveAgain("-[OrbinelIdentity getBrandNewOrbinelIdWithCompletionBlock:]",
                 "Getting brand new orbinlId for logged out user.", {}, completion);
}

void OrbinelIdentity::resolveAgain(const GuardedOperation& operation, std::string_view message,
                                   const Dictionary& identifiers, const Completion& completion) noexcept {
    const bool asked = guarded(reports_, operation, [&] {
        reports_.log(LogType::inapp, LogLevel::info, message, [] { return Dictionary(); });
        sendIdentityRequest(identifiers, [this, asked = order(), partner = session_.partnerName(), identifiers,
                                          completion](const auto& orbinelId) {
            if (partner == session_.partnerName()) {
                resolved(asked, orbinelId, identifiers);
            } else {
                reports_.note("Left an ID: it is one of the partner before.");
            }
            completion();
        });
    });
    if (!asked) guarded(reports_, operation, [&] { completion(); });
}

void OrbinelIdentity::resolved(const Order& asked, const std::string& orbinelId,
                               const Dictionary& identifiers) noexcept {
    if (orbinelId.empty()) return;
    if (asked != order()) return reports_.note("Left an ID: a login or logout has begun since it was asked for.");
    identityRequestSuccessHandler(orbinelId, identifiers);
    yieldToLogout(asked.begun);
}

void OrbinelIdentity::logoutUser() noexcept {
    guarded(reports_, "-[OrbinelIdentity logoutUser]", [&] {
        const auto change = beginChange();
        lastLogout_ = change;
        if (mayTakeEffect(change)) forgetLogin();
    });
}

void OrbinelIdentity::forgetLogin() noexcept {
    unsetUserIdentifiers();
    user_.setLoginStatus(false);
}

void OrbinelIdentity::yieldToLogout(Change change) noexcept {
    if (lastLogout_ > change) forgetLogin();
}

bool OrbinelIdentity::mayTakeEffect(Change change) noexcept {
    auto last = lastInEffect_.load();
    while (last <= change) {
        if (lastInEffect_.compare_exchange_weak(last, change)) return true;
    }
    reports_.note("Left an answer of the identity service: the identity has changed since it was asked for.");
    return false;
}

}  // namespace orbinel
