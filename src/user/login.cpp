#include "user/login.hpp"

#include <optional>
#include <utility>

#include "base/guard.hpp"
#include "session/session_reason.hpp"

namespace orbinel {

/// One login on its way; only touched by the step that has its turn.
struct Login::Attempt {
    Dictionary identifiers;
    OrbinelIDResult result;
    std::optional<std::string> rememberedId;  // in force when the login began
    OrbinelIdentity::Change change = 0;
    std::string orbinelId;  // as answered; empty without an answer
    SessionMark closed;     // the session that was closed for it
};

Login::Login(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      identity_(needs.identity),
      user_(needs.user),
      session_(needs.session),
      stop_(needs.stop),
      start_(needs.start),
      lifetime_(needs.lifetime),
      scheduler_(needs.scheduler) {}

void Login::login(Dictionary identifiers, OrbinelIDResult result) noexcept {
    guarded(reports_, "-[OrbinelUser login:orbinelIDResult:]", [&] {
        if (!helper_.shouldProceed()) return;
        if (!identity_.areIdentifiersAlreadyCached(identifiers)) {
            return startUnificationProcessWithSessionProcess(std::move(identifiers), std::move(result));
        }
        if (identity_.shouldRetryIdentification()) return reports_.note("Left a login: it is to be repeated anyway.");
        if (const auto orbinelId = identity_.getOrbinelID()) giveResult(result, *orbinelId);
    });
}

void Login::startUnificationProcessWithSessionProcess(Dictionary identifiers, OrbinelIDResult result) noexcept {
    guarded(reports_, "-[OrbinelIdentity startUnificationProcessWithSessionProcess:orbinelIDResult:]", [&] {
        if (identifiers.empty()) return reports_.note("Left a login without identifiers.");
        const auto attempt = std::make_shared<Attempt>();
        attempt->identifiers = std::move(identifiers);
        attempt->result = std::move(result);
        attempt->rememberedId = identity_.getOrbinelID();
        attempt->change = identity_.beginChange();
        startUnificationProcess(attempt);
    });
}

void Login::startUnificationProcess(const AttemptPointer& attempt) {
    reports_.log(LogType::common, LogLevel::info, "Login requested.");
    identity_.sendIdentityRequest(attempt->identifiers, [this, attempt](const std::string& orbinelId) {
        attempt->orbinelId = orbinelId;
        answered(attempt);
    });
}

void Login::answered(const AttemptPointer& attempt) {
    if (!identity_.mayTakeEffect(attempt->change)) return;
    if (attempt->orbinelId.empty()) identity_.setRetryIdentityRequestStatus(true);
    if (!attempt->orbinelId.empty() && attempt->orbinelId != attempt->rememberedId) {
        return scheduler_.postMain(lifetime_.whileAlive([this, attempt] { switchPerson(attempt); }));
    }
    apply(*attempt);
    if (!attempt->orbinelId.empty()) giveResult(attempt->result, attempt->orbinelId);
}

/// What was recorded so far belongs to the person before: the session ends before anything of the new one is stored.
void Login::switchPerson(const AttemptPointer& attempt) noexcept {
    guarded(reports_, "-[OrbinelIdentity startUnificationProcessWithSessionProcess:orbinelIDResult:]", [&] {
        if (!identity_.mayTakeEffect(attempt->change)) return;
        if (!helper_.shouldProceed()) return postpone(*attempt);
        user_.setLoginStatus(false);
        removeDisplayedInapp();
        attempt->closed = session_.mark();
        stop_.sendSessionStopRequestWithReason(session_reason::login, [this, attempt] { startNewSession(attempt); });
    });
}

/// A consent was withdrawn meanwhile: no session is closed or opened for this login, so that the next activation has
/// to resolve its identifiers.
void Login::postpone(const Attempt& attempt) noexcept {
    identity_.storeUserIdentifiers(attempt.identifiers);
    identity_.setRetryIdentityRequestStatus(true);
}

void Login::removeDisplayedInapp() {
    auto* inapp = displayedInapp.get();
    if (inapp == nullptr) return;
    inapp->removeInappWithCompletionHandler(lifetime_.whileAlive(
        [this] { reports_.log(LogType::inapp, LogLevel::info, "In-app messages disabled and removed."); }));
}

/// Also where a later login or a logout has overtaken this one: the session has been closed for it. Where another
/// session has ended since, the application has left the foreground, and the next activation opens the session.
void Login::startNewSession(const AttemptPointer& attempt) {
    if (identity_.mayTakeEffect(attempt->change)) apply(*attempt);
    if (!helper_.shouldProceed()) return;
    if (session_.recordNumber() != attempt->closed.record + 1) return giveResultIfInEffect(*attempt);
    start_.sendStartRequestWithReasonAndFlushQueuedRequests(session_reason::login,
                                                            [this, attempt] { giveResultIfInEffect(*attempt); });
}

void Login::giveResultIfInEffect(const Attempt& attempt) noexcept {
    if (identity_.isInEffect(attempt.change)) giveResult(attempt.result, attempt.orbinelId);
}

void Login::apply(const Attempt& attempt) noexcept {
    identity_.storeUserIdentifiers(attempt.identifiers);
    identity_.identityRequestSuccessHandler(attempt.orbinelId, attempt.identifiers);
    identity_.yieldToLogout(attempt.change);
}

void Login::giveResult(const OrbinelIDResult& result, const std::string& orbinelId) noexcept {
    if (!result) return;
    guarded(reports_, "-[OrbinelUser login:orbinelIDResult:]", [&] { result(orbinelId); });
}

}  // namespace orbinel
