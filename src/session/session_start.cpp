#include "session/session_start.hpp"

#include <chrono>
#include <stdexcept>

#include "base/guard.hpp"
#include "base/value_content.hpp"
#include "session/session_reason.hpp"

namespace orbinel {

namespace {

constexpr std::string_view sessionStart = "session_start";
constexpr std::string_view sessionStartFromPush = "session_start_from_push";
constexpr std::int32_t sessionStartedType = 6;  // among the types of the application's callback
constexpr int lastRetryStep = 3;
constexpr std::chrono::milliseconds retryUnit{2000};

}  // namespace

OrbinelConfig::OrbinelConfig(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      session_(needs.session),
      sender_(needs.sender),
      queue_(needs.queue),
      endpoints_(needs.endpoints),
      collaborators_(needs.collaborators),
      lifetime_(needs.lifetime),
      scheduler_(needs.scheduler),
      device_(needs.device) {}

void OrbinelConfig::setSessionStartedCallback(TargetAction<const Dictionary&> callback) {
    const MutexLock lock(callbackMutex_);
    std::swap(sessionStartedCallback_, callback);
}

// --- Sending ---

void OrbinelConfig::sendStartRequestWithReasonAndFlushQueuedRequests(int reason, Completion completion) noexcept {
    guarded(reports_, "+[OrbinelConfig sendStartRequestWithReasonAndFlushQueuedRequests:completion:]", [&] {
        if (reason == session_reason::reinit) {
            flushQueueIfAppropriate(1);
            sendStartRequestWithReason(reason, std::move(completion));
            return;
        }
        sender_.sendQueuedRequests([this, reason, session = session_.mark(), completion = std::move(completion)] {
            if (session != session_.mark()) return reports_.note("No session start: its session has ended.");
            sendStartRequestWithReason(reason, completion);
        });
    });
}

void OrbinelConfig::sendStartRequestWithReason(int reason, Completion completion) noexcept {
    const bool sent = guarded(reports_, "+[OrbinelConfig sendStartRequestWithReason:completion:]", [&] {
        // Whoever asked for the start saw the consents given, but requests may have been waited for since.
        if (!helper_.consentsAreGiven()) return reports_.note("No session start: a consent is withheld.");
        const auto session = session_.mark();
        auto payload = getStartPayload();
        reports_.feed("sessionStartResquest", [&] {
            return Dictionary{{"start_request", session_.dictToJson(payload)}};
        });
        if (const auto name = nameOfReason(reason)) payload.set("reason", *name);
        sender_.sendRequest(std::move(payload), endpoints_.getConfig(), [this, session, completion](Value answer) {
            scheduler_.postMain(lifetime_.whileAlive([this, session, completion, answer = std::move(answer)] {
                handleAnswer(answer, session, completion);
            }));
        });
    });
    if (!sent) finish(completion);
}

Dictionary OrbinelConfig::getStartPayload() {
    Dictionary payload{{"udid", helper_.getUdid()},
                       {"orbinel_id", collaborators_.identity->getOrbinelID()},
                       {"partner_name", session_.partnerName()},
                       {"device_info", getDeviceData()}};
    payload.eraseIf([](const Dictionary::Entry& entry) { return entry.second.isAbsent(); });
    if (helper_.isFirstSession()) {
        payload.set("first_run", true);
        setFirstRun();
    }
    return payload;
}

Dictionary OrbinelConfig::getDeviceData() {
    auto& device = *collaborators_.device.get();
    Dictionary data{{"app_version", device.getAppVersion()},  {"os_version", device.getOsVersion()},
                    {"connection", connectionType()},         {"battery", device.getBattery()},
                    {"push_enabled", device.isPushEnabled()}, {"location_enabled", device.isLocationEnabled()},
                    {"sdk_version", device.getSDKVersion()}};
    data.eraseIf([](const Dictionary::Entry& entry) { return entry.second.isAbsent(); });
    return data;
}

std::string_view OrbinelConfig::connectionType() const {
    switch (device_.facts()->connection) {
        case platform::Connection::wifi:
            return "wifi";
        case platform::Connection::cellular:
            return "celular";
        case platform::Connection::none:
            return "none";
        case platform::Connection::unknown:
            break;
    }
    return "unknown";
}

void OrbinelConfig::setFirstRun() {
    session_.update([](SessionRecord& record) { record.is_first_run = true; });
}

// --- The answer, in this order ---

void OrbinelConfig::handleAnswer(const Value& answer, const SessionMark& session,
                                 const Completion& completion) noexcept {
    if (session != session_.mark()) return leaveAnswer(answer, completion);
    const bool proceed = guarded(reports_, "+[OrbinelConfig sendStartRequestWithReason:completion:]", true,
                                 [&] { return applyAnswer(answer); });
    if (proceed) finish(completion);
}

void OrbinelConfig::leaveAnswer(const Value& answer, const Completion& completion) {
    reports_.note("Left the answer to a session start: its session has ended.");
    if (!answer.isAbsent()) complete(completion);
}

/// False where the session start ends here, without the callback and the completion.
bool OrbinelConfig::applyAnswer(const Value& answer) {
    if (answer.isAbsent()) {
        reports_.note("The session start was not answered.");
        collaborators_.events->recordInternalEvent(sessionStart);
        return false;
    }
    recordAnswer(answer);
    const auto* dictionary = answer.ifDictionary();
    if (dictionary == nullptr) throw std::runtime_error("The answer to the session start is not a dictionary.");
    const auto start = fromDictionary<StartAnswer>(*dictionary);
    helper_.setSdkDisabled(start.sdk_disabled);
    if (start.sdk_disabled) return false;
    collaborators_.events->recordInternalEvent(sessionStart);
    applyLogSwitches(start);
    summariseReceivedInapps(start.inapps.value_or(Array()));
    applyIdentity(start);
    applyRecommendations(start);
    applyContents(start);
    return !start.inapps || applyInapps(*start.inapps);
}

/// Whatever it says, it is an answer: events no longer wait for one.
void OrbinelConfig::recordAnswer(const Value& answer) {
    reports_.feed("sessionStartResponse", [&] {
        const auto* dictionary = answer.ifDictionary();
        return Dictionary{{"start_response", session_.dictToJson(dictionary != nullptr ? *dictionary : Dictionary())}};
    });
    collaborators_.campaigns->setStartRequestCompleted(true);
}

void OrbinelConfig::applyLogSwitches(const StartAnswer& answer) {
    if (answer.log_flush_time_interval) {
        collaborators_.logSwitches->setLogFlushTimeInterval(*answer.log_flush_time_interval);
    }
    session_.update([&](SessionRecord& record) { record.session_id = answer.session_id; });
    collaborators_.logSwitches->setSessionId(answer.session_id);
    collaborators_.logSwitches->setIsLoggingEnabled(answer.is_logging_enabled);
    collaborators_.logSwitches->startSendingLogsIfAppropriate();
}

void OrbinelConfig::summariseReceivedInapps(const Array& inapps) {
    Array summaries;
    for (const auto& inapp : inapps) {
        const auto* campaign = inapp.ifDictionary();
        if (campaign == nullptr) continue;
        Dictionary summary;
        for (const auto* key : {"inapp_id", "variant_id"}) {
            if (hasContent((*campaign)[key])) summary.set(key, (*campaign)[key]);
        }
        summary.set("timestamp", helper_.getNowAsTimestamp());
        summaries.emplace_back(std::move(summary));
    }
    session_.update([&](SessionRecord& record) { record.received_inapps = summaries; });
    reports_.log(LogType::inapp, LogLevel::info, "In apps response received from backend.", [&] {
        return Dictionary{{"inapps", summaries}};
    });
}

void OrbinelConfig::applyIdentity(const StartAnswer& answer) {
    if (!answer.new_id.empty()) setNewIdForIdentication(answer.new_id);
    if (!answer.reset_iid) return;
    reports_.log(LogType::inapp, LogLevel::info, "Backend sent reset_iid true.");
    collaborators_.identity->resetOrbinelIdWithCompletionBlock([] {});
}

void OrbinelConfig::setNewIdForIdentication(const std::string& orbinelId) {
    collaborators_.identity->setUnifiedOrbinelID(orbinelId);
    collaborators_.identity->setRetryIdentityRequestStatus(false);
}

void OrbinelConfig::applyRecommendations(const StartAnswer& answer) {
    if (answer.smart_recommendations.empty()) {
        collaborators_.recommendations->clearEndpoints();
    } else {
        collaborators_.recommendations->storeEndpoints(answer.smart_recommendations);
    }
}

void OrbinelConfig::applyContents(const StartAnswer& answer) {
    for (const auto& content : answer.contents) {
        const auto* campaign = content.ifDictionary();
        if (campaign == nullptr) continue;
        const auto& variables = (*campaign)["variables"];
        const auto& contentId = (*campaign)["content_id"];
        const auto& variantId = (*campaign)["variant_id"];
        collaborators_.contents->insertContentCampaigns(variables, contentId, variantId);
        collaborators_.contents->insertNonCachedContentCampaigns(variables, contentId, variantId);
    }
    if (isPresent(answer.passive_variables)) {
        collaborators_.contents->removeContentsFromCache(answer.passive_variables);
    }
}

/// False where a message of the push that opened the session, or a test message, takes the place of the session start.
bool OrbinelConfig::applyInapps(const Array& inapps) {
    auto& campaigns = *collaborators_.campaigns.get();
    campaigns.cleanFrequencyCache();
    const bool shownFromPush = campaigns.checkInapp(sessionStartFromPush, 1);
    if (inapps.empty()) return true;
    campaigns.inappToMemory(inapps);
    if (shownFromPush || campaigns.doesTestInAppExist()) return false;
    replayEventsBeforeInapp();
    campaigns.checkInapp(sessionStart, 1);
    return true;
}

void OrbinelConfig::replayEventsBeforeInapp() {
    std::vector<std::string> names;
    session_.update([&](SessionRecord& record) { names.swap(record.eventsBeforeInapp); });
    for (const auto& name : names) collaborators_.campaigns->checkInapp(name, 1);
}

void OrbinelConfig::finish(const Completion& completion) noexcept {
    performSessionStartedCallback();
    complete(completion);
}

void OrbinelConfig::complete(const Completion& completion) noexcept {
    if (!completion) return;
    guarded(reports_, "+[OrbinelConfig sendStartRequestWithReason:completion:]", [&] { completion(); });
}

void OrbinelConfig::performSessionStartedCallback() noexcept {
    guarded(reports_, "+[OrbinelConfig performSessionStartedCallback]", [&] {
        TargetAction<const Dictionary&> callback;
        {
            const MutexLock lock(callbackMutex_);
            callback = sessionStartedCallback_;
        }
        if (!callback.isAlive()) return;
        scheduler_.postMain(lifetime_.whileAlive([this, callback] {
            guarded(reports_, "+[OrbinelConfig performSessionStartedCallback]", [&] {
                callback.perform(Dictionary{{"type", sessionStartedType}});
            });
        }));
    });
}

// --- The retry loop of the offline queue ---

void OrbinelConfig::flushQueueIfAppropriate(int retryStep) noexcept {
    guarded(reports_, "+[OrbinelConfig flushQueueIfAppropriate:]", [&] {
        if (retryStep > lastRetryStep) return reportFlushingFinished();
        const auto place = timers_.open();
        timers_.keep(place,
                     scheduler_.postGlobalAfter(retryUnit * retryStep, lifetime_.whileAlive([this, retryStep, place] {
                         timers_.close(place);
                         retryQueuedRequests(retryStep);
                     })));
    });
}

void OrbinelConfig::retryQueuedRequests(int retryStep) {
    queue_.count([this, retryStep](std::size_t queued) {
        // A stop that waits is gathered data: it stays where it is until a session may start again.
        if (queued == 0 || !helper_.consentsAreGiven()) return reportFlushingFinished();
        reports_.log(LogType::common, LogLevel::info, "Retried queued requests.", [&] {
            return Dictionary{{"retry_step", std::to_string(retryStep)}};
        });
        sender_.sendQueuedRequests([this, retryStep] { flushQueueIfAppropriate(retryStep + 1); });
    });
}

void OrbinelConfig::reportFlushingFinished() noexcept {
    reports_.log(LogType::common, LogLevel::info, "Flushing operation finished for Queued requests.");
}

}  // namespace orbinel
