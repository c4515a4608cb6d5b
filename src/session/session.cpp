#include "session/session.hpp"

#include <cmath>

#include "base/guard.hpp"
#include "base/json_rules.hpp"
#include "base/value_content.hpp"
#include "session/stored_keys.hpp"

namespace orbinel {

namespace {

constexpr double longestSession = 86'400;        // one day, in seconds
constexpr std::int32_t implausibleSession = 10;  // what is reported instead, in seconds

bool isEmptyContainer(const Value& value) {
    const auto* array = value.ifArray();
    const auto* dictionary = value.ifDictionary();
    return (array != nullptr && array->empty()) || (dictionary != nullptr && dictionary->empty());
}

}  // namespace

OrbinelSession::OrbinelSession(const Needs& needs)
    : reports_(needs.reports), helper_(needs.helper), json_(needs.json), collaborators_(needs.collaborators) {}

std::string OrbinelSession::partnerName() const {
    return read([](const SessionRecord& record) { return record.partner_name; });
}

void OrbinelSession::setPartnerName(std::string name) {
    update([&](SessionRecord& record) {
        if (!record.partner_name.empty() && record.partner_name != name) record.eventsBeforeInapp.clear();
        record.partner_name.swap(name);
    });
}

SessionMark OrbinelSession::mark() const {
    return read([this](const SessionRecord& record) { return SessionMark{recordNumber_.load(), record.partner_name}; });
}

void OrbinelSession::startTimer() noexcept {
    guarded(reports_, "-[OrbinelSession startTimer]", [&] {
        helper_.standardStore().set(keys::sessionStartTime, helper_.now());
        helper_.standardStore().synchronize();
    });
}

std::int32_t OrbinelSession::calculateSessionDuration() const noexcept {
    return guarded(reports_, "-[OrbinelSession calculateSessionDuration]", implausibleSession, [&] {
        const auto start = helper_.standardStore().value(keys::sessionStartTime).number().value_or(0);
        const double duration = std::trunc(helper_.now() - start);
        return duration >= 0 && duration <= longestSession ? static_cast<std::int32_t>(duration) : implausibleSession;
    });
}

void OrbinelSession::emptyReceivedInappData() {
    update([](SessionRecord& record) { record.received_inapps.clear(); });
}

void OrbinelSession::setPushPermissions(bool granted) noexcept {
    guarded(reports_, "-[OrbinelSession setPushPermissions:]",
            [&] { collaborators_.device->setPushEnabledInSettings(granted); });
}

SessionRecord OrbinelSession::takeForStop() {
    SessionRecord filled;
    filled.session_duration = calculateSessionDuration();
    fillSession(filled, collaborators_.attributes->takeAndResetUser());
    auto record = takeRecord(filled);
    resetCollaborators();
    return record;
}

Dictionary OrbinelSession::describeNow() {
    auto record = read([](const SessionRecord& current) { return current; });
    record.session_duration = calculateSessionDuration();
    fillSession(record, collaborators_.attributes->attributesNow());
    auto payload = toDictionary(record);
    filterPayload(payload);
    return payload;
}

void OrbinelSession::fillSession(SessionRecord& record, TakenAttributes attributes) {
    record.device_attributes = collaborators_.device->getDeviceAttributes();
    if (record.device_attributes.ifDictionary() == nullptr) {
        reports_.log(LogType::common, LogLevel::info, "DeviceAttributes are not valid.", [] {
            return Dictionary{{"function", "getDeviceAttributes"}};
        });
    }
    record.orbinel_id = collaborators_.identity->getOrbinelID();
    record.udid = helper_.getUdid();
    record.user_identifiers = collaborators_.identity->getIdentifiersForStopPayload();
    record.user_attributes = std::move(attributes.user_attributes);
    record.custom_attributes = std::move(attributes.custom_attributes);
    record.removed_attributes = std::move(attributes.removed_attributes);
    record.timestamp = helper_.getNowAsTimestamp();
}

SessionRecord OrbinelSession::takeRecord(const SessionRecord& filled) {
    SessionRecord taken;
    const MutexLock lock(mutex_);
    std::swap(taken, record_);
    ++recordNumber_;
    for (auto* record : {&taken, &record_}) {
        record->orbinel_id = filled.orbinel_id;
        record->udid = filled.udid;
        record->user_attributes = filled.user_attributes;
        record->user_identifiers = filled.user_identifiers;
        record->device_attributes = filled.device_attributes;
        record->custom_attributes = filled.custom_attributes;
        record->removed_attributes = filled.removed_attributes;
    }
    record_.partner_name = taken.partner_name;
    record_.session_id = taken.session_id;
    taken.session_duration = filled.session_duration;
    taken.timestamp = filled.timestamp;
    // These never travel; what they kept ends with the session.
    taken.eventsBeforeInapp.clear();
    taken.eventOccurrences.clear();
    taken.session_content_variables.clear();
    return taken;
}

void OrbinelSession::resetCollaborators() {
    collaborators_.events->clearTotalEventCount();
    collaborators_.campaigns->forgetCampaigns();
    collaborators_.recommendations->emptyRecommendationLogs();
}

void OrbinelSession::filterPayload(Dictionary& payload) const noexcept {
    guarded(reports_, "-[OrbinelSession filterPayload:]", [&] {
        payload.eraseIf([](const Dictionary::Entry& entry) {
            const auto& [key, value] = entry;
            return isEmptyContainer(value) || (key == "universal_link" && !isPresent(value)) ||
                   key == "session_content_variables";
        });
    });
}

std::string OrbinelSession::dictToJson(const Dictionary& dictionary) const noexcept {
    static constexpr auto neutral = "{}";
    return guarded(reports_, "-[OrbinelSession dictToJson:]", std::string(neutral), [&] {
        if (!isValidJsonDeeply(dictionary)) {
            reports_.log(LogType::common, LogLevel::info, "JSON is not valid.", [] {
                return Dictionary{{"function", "dictToJson"}};
            });
            return std::string(neutral);
        }
        auto text = json_.serialise(dictionary, platform::JsonStyle::pretty);
        if (!text) {
            reports_.log(LogType::common, LogLevel::error, "JSON serialization failed.", [] {
                return Dictionary{{"function", "dictToJson"}, {"error", "The dictionary could not be written."}};
            });
        }
        return text ? std::move(*text) : std::string(neutral);
    });
}

bool OrbinelSession::isValidJSONString(std::string_view text) const noexcept {
    return guarded(reports_, "-[OrbinelSession isValidJSONString:]", false, [&] {
        if (text.empty()) return false;
        const auto parsed = json_.parse(text);
        if (const auto* failure = std::get_if<platform::JsonFailure>(&parsed)) {
            reports_.log(LogType::common, LogLevel::error, "JSON serialization failed.", [&] {
                return Dictionary{{"function", "isValidJSONString"}, {"error", failure->reason}};
            });
            return false;
        }
        const bool valid = isValidJsonDeeply(std::get<Value>(parsed));
        if (!valid) reports_.log(LogType::common, LogLevel::error, "JSON is invalid after deserialization.");
        return valid;
    });
}

}  // namespace orbinel
