#include "user/identity.hpp"

#include <algorithm>

#include "base/guard.hpp"
#include "session/stored_keys.hpp"

namespace orbinel {

namespace {

bool isLetterOrDigit(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool hasFormOfId(std::string_view text) noexcept {
    return !text.empty() && isLetterOrDigit(text.front()) &&
           std::all_of(text.begin(), text.end(), [](char c) { return isLetterOrDigit(c) || c == '-' || c == '.'; });
}

}  // namespace

OrbinelIdentity::OrbinelIdentity(const Needs& needs)
    : reports_(needs.reports), helper_(needs.helper), session_(needs.session), listeners_(needs.listeners) {}

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
        mirrored_ = wanted;
    }
    const auto group = helper_.appGroupStore();
    if (group == nullptr) return;
    group->set(keys::partnerName, wanted.partnerName);
    group->set(keys::orbinelId, wanted.orbinelId);
    group->synchronize();
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

Dictionary OrbinelIdentity::getIdentifiers() const noexcept {
    return guarded(reports_, "-[OrbinelIdentity getIdentifiers]", Dictionary(), [&] {
        auto stored = helper_.standardStore().value(keys::userIdentifiers);
        auto* identifiers = stored.ifDictionary();
        return identifiers != nullptr ? std::move(*identifiers) : Dictionary();
    });
}

Dictionary OrbinelIdentity::getIdentifiersForStopPayload() noexcept {
    return shouldRetryIdentification() ? Dictionary() : getIdentifiers();
}

void OrbinelIdentity::resetOrbinelIdWithCompletionBlock(Completion completion) noexcept {
    guarded(reports_, "-[OrbinelIdentity resetOrbinelIdWithCompletionBlock:]", [&] {
        reports_.note("Identity requests are not sent yet: the Orbinel ID stays as it is.");
        completion();
    });
}

void OrbinelIdentity::sendIdentityRequestWithCachedIdentifiers(Completion completion) noexcept {
    guarded(reports_, "-[OrbinelIdentity sendIdentityRequestWithCachedIdentifiers:]", [&] {
        reports_.note("Identity requests are not sent yet: the Orbinel ID stays as it is.");
        completion();
    });
}

}  // namespace orbinel
