#include "core/initialisation.hpp"

#include <algorithm>
#include <cassert>

#include "base/ascii.hpp"
#include "base/guard.hpp"
#include "base/utf8.hpp"
#include "session/session_reason.hpp"
#include "session/stored_keys.hpp"

namespace orbinel {

namespace {

constexpr std::size_t shortestPartnerName = 2;

bool isLowerLetterOrDigit(char c) noexcept { return ascii::isLowerLetter(c) || ascii::isDigit(c); }

bool hasFormOfPartnerName(std::string_view name) noexcept {
    return !name.empty() && isLowerLetterOrDigit(name.front()) &&
           std::all_of(name.begin(), name.end(), [](char c) { return isLowerLetterOrDigit(c) || c == '_'; });
}

/// What is absent is fed as the empty text.
template <typename Content>
Value valueOrEmptyText(const std::optional<Content>& content) {
    return content ? Value(*content) : Value("");
}

}  // namespace

Initialisation::Initialisation(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      endpoints_(needs.endpoints),
      session_(needs.session),
      stop_(needs.stop),
      start_(needs.start),
      privacy_(needs.privacy),
      user_(needs.user),
      identity_(needs.identity),
      automaticIntegration_(needs.automaticIntegration),
      wizard_(needs.wizard),
      contents_(needs.contents),
      recommendations_(needs.recommendations),
      lifecycle_(needs.lifecycle),
      templateEvents_(needs.templateEvents),
      frequencyCap_(needs.frequencyCap),
      inapp_(needs.inapp),
      push_(needs.push),
      interception_(needs.interception),
      lifetime_(needs.lifetime),
      scheduler_(needs.scheduler),
      notificationCentre_(needs.notificationCentre) {}

void Initialisation::disableAutoIntegration() noexcept {
    autoIntegration_ = false;
    guarded(reports_, "+[Orbinel disableAutoIntegration]", [&] { automaticIntegration_.startAutoIntegration(false); });
}

// --- Initialising ---

void Initialisation::initWithLaunchOptions(const Arguments& arguments) noexcept {
    const auto* operation = arguments.customEndpoint
                                ? "+[Orbinel initWithLaunchOptions:partnerName:appGroup:customEndpoint:]"
                                : "+[Orbinel initWithLaunchOptions:partnerName:appGroup:]";
    guarded(reports_, operation, [&] {
        if (autoIntegration_) automaticIntegration_.startAutoIntegration(true);
        helper_.saveAppGroup(arguments.appGroup);
        if (arguments.customEndpoint) endpoints_.setCustomEndpoint(*arguments.customEndpoint);
        initSDK(arguments.partnerName, arguments.launchOptions);
        reports_.feed("initSDK", [&] {
            Dictionary data{{"partnerName", valueOrEmptyText(arguments.partnerName)},
                            {"launchOptions", valueOrEmptyText(arguments.launchOptions)},
                            {"appGroup", valueOrEmptyText(arguments.appGroup)}};
            if (arguments.customEndpoint) data.set("customEndpoint", valueOrEmptyText(*arguments.customEndpoint));
            return data;
        });
    });
}

void Initialisation::initSDK(const Value& partnerName, const std::optional<Dictionary>& launchOptions) noexcept {
    guarded(reports_, "+[Orbinel initSDK:launchOptions:]", [&] {
        if (!partnerNameIsValid(partnerName)) return;
        if (helper_.sdkDisabled()) return reports_.note("Not initialised: the backend has switched the library off.");
        interception_.callUserNotificationCenterSwizzlers();
        user_.initUser();
        privacy_.adoptRememberedConsents();
        session_.setPartnerName(partnerName.stringOrEmpty());
        templateEvents_.addObserverForEventInapps();
        if (!automaticIntegration_.isAutoIntegrationEnabled()) {
            push_.handlePushLogWithUserInfo(launchOptions.value_or(Dictionary()));
        }
        observePlatform();
        reports_.feed("initSDK", [&] {
            return Dictionary{{"partnerName", partnerName}, {"launchOptions", valueOrEmptyText(launchOptions)}};
        });
        regularInitHasDone_ = true;
    });
}

void Initialisation::observePlatform() {
    namespace names = platform::notification_names;
    observe(names::didBecomeActive, &Lifecycle::handleApplicationDidBecomeActiveNotification);
    observe(names::didEnterBackground, &Lifecycle::handleApplicationDidEnterBackgroundNotification);
    observe(names::willTerminate, &Lifecycle::appWillTerminate);
    observe(names::orientationDidChange, &Lifecycle::appDidChangeOrientation);
}

void Initialisation::observe(std::string_view name, void (Lifecycle::*handler)() noexcept) {
    auto observer = notificationCentre_.addObserver(name, lifetime_.whileAlive([this, handler](const Dictionary&) {
        if (!scheduler_.isMain()) {
            reports_.note("A notification of the platform was posted off the main thread.");
            assert(false && "the platform's notifications belong on the main thread");
        }
        (lifecycle_.*handler)();
    }));
    const MutexLock lock(mutex_);
    observers_.push_back(std::move(observer));
}

bool Initialisation::partnerNameIsValid(const Value& partnerName) noexcept {
    return guarded(reports_, "+[Orbinel partnerNameIsValid:]", false, [&] {
        const auto* name = partnerName.ifString();
        const std::string_view refusal =
            name == nullptr                            ? "Partner name is invalid. Is not a String."
            : utf16Length(*name) < shortestPartnerName ? "Partner name is invalid. Must have more than 1 character."
            : !hasFormOfPartnerName(*name)             ? "Partner name is invalid. Contains invalid characters."
                                                       : "";
        if (!refusal.empty()) sendReinitLogWithMessage(refusal);
        return refusal.empty();
    });
}

void Initialisation::sendReinitLogWithMessage(std::string_view message) noexcept {
    reports_.log(LogType::reinit, LogLevel::info, message, [] { return Dictionary(); });
}

// --- Switching the partner ---

void Initialisation::reinitWithPartnerName(const std::optional<std::string>& partnerName) noexcept {
    guarded(reports_, "+[Orbinel reinitWithPartnerName:]", [&] {
        if (helper_.sdkDisabled()) return sendReinitLogWithMessage("Reinit returned. SDK is disabled.");
        if (!regularInitHasDone_) return sendReinitLogWithMessage("Reinit returned. Regular init is not done.");
        if (partnerName == partnerToBe()) {
            return sendReinitLogWithMessage("Reinit returned. Partner name is the same.");
        }
        if (!partnerNameIsValid(partnerName)) return;
        sendReinitLogWithMessage("Reinit called.");
        inapp_.removeInapp(
            lifetime_.whileAlive([this, partnerSwitch = beginSwitch(*partnerName)] { switchPartner(partnerSwitch); }));
    });
}

std::string Initialisation::partnerToBe() const {
    SwitchPointer underWay;
    {
        const MutexLock lock(mutex_);
        underWay = underWay_;
    }
    return underWay != nullptr ? underWay->partnerName : session_.partnerName();
}

Initialisation::SwitchPointer Initialisation::beginSwitch(const std::string& partnerName) {
    auto begun = std::make_shared<const PartnerSwitch>(PartnerSwitch{partnerName, lifecycle_.isInBackground()});
    const MutexLock lock(mutex_);
    underWay_ = begun;
    return begun;
}

bool Initialisation::isOvertaken(const SwitchPointer& partnerSwitch) {
    {
        const MutexLock lock(mutex_);
        if (underWay_ == partnerSwitch) return false;
    }
    reports_.note([&] { return "Left the switch to " + partnerSwitch->partnerName + ": another one was asked for."; });
    return true;
}

void Initialisation::switchPartner(const SwitchPointer& partnerSwitch) {
    guarded(reports_, "+[Orbinel reinitWithPartnerName:]", [&] {
        if (isOvertaken(partnerSwitch)) return;
        if (helper_.consentsAreGiven()) return stopOldSession(partnerSwitch);
        adoptWithoutSession(partnerSwitch);
    });
}

void Initialisation::stopOldSession(const SwitchPointer& partnerSwitch) {
    stop_.sendSessionStopRequestWithReason(session_reason::reinit, [this, partnerSwitch] {
        sendReinitLogWithMessage("Reinit session stop completed.");
        if (isOvertaken(partnerSwitch)) return;
        // The stop may have taken a minute.
        if (!helper_.consentsAreGiven()) return adoptWithoutSession(partnerSwitch);
        resolveIdentity(partnerSwitch);
    });
}

void Initialisation::resolveIdentity(const SwitchPointer& partnerSwitch) {
    if (!adoptPartner(partnerSwitch)) return;
    identity_.sendIdentityRequestWithCachedIdentifiers(lifetime_.whileAlive(
        [this, partnerSwitch, adopted = session_.mark()] { startNewSession(*partnerSwitch, adopted); }));
}

/// Where a session has ended since the partner was adopted, or the application has left the foreground, the next
/// activation opens the session, or has opened it.
void Initialisation::startNewSession(const PartnerSwitch& partnerSwitch, const SessionMark& adopted) {
    sendReinitLogWithMessage("Reinit OrbinelID reset completed.");
    const bool left = lifecycle_.isInBackground() && !partnerSwitch.begunInBackground;
    if (left || adopted != session_.mark()) {
        return reports_.note("No session start for the new partner: the application has left the foreground.");
    }
    start_.sendStartRequestWithReasonAndFlushQueuedRequests(session_reason::reinit, [this] {
        inapp_.enableInAppMessages();
        sendReinitLogWithMessage("Reinit session start completed.");
        sendReinitLogWithMessage("Reinit completed.");
    });
}

void Initialisation::adoptWithoutSession(const SwitchPointer& partnerSwitch) {
    sendReinitLogWithMessage("Reinit GDPR false. Skipping session stop/start.");
    static_cast<void>(adoptPartner(partnerSwitch));
}

bool Initialisation::adoptPartner(const SwitchPointer& partnerSwitch) {
    flushSDKCache();
    const MutexLock lock(mutex_);  // of two switches that come here at once, the later one adopts last
    if (underWay_ != partnerSwitch) return false;
    session_.setPartnerName(partnerSwitch->partnerName);
    underWay_.reset();
    return true;
}

void Initialisation::flushSDKCache() noexcept {
    guarded(reports_, "+[Orbinel flushSDKCache]", [&] {
        identity_.removeCachedOrbinelID();
        contents_.removeTestVariables();
        recommendations_.clearEndpoints();
        wizard_.terminateConnection();
        auto& store = helper_.standardStore();
        store.set(keys::retryIdentityRequest, false);
        store.synchronize();
        frequencyCap_.forget();
        reports_.log(LogType::common, LogLevel::info, "Cached SDK data flushed.");
    });
}

}  // namespace orbinel
