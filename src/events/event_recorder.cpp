#include "events/event_recorder.hpp"

#include <algorithm>
#include <cassert>
#include <limits>

#include "base/guard.hpp"
#include "base/value_text.hpp"
#include "base/whole_number.hpp"
#include "events/data_types.hpp"

namespace orbinel {

namespace {

constexpr std::string_view kWarningMessageForEventValue = "warningMessageForEventValue";

/// How the wizard names a type: it knows one kind of number only.
std::string_view wizardTypeOf(const Value& value) {
    const auto type = getDataTypeOfObject(value);
    const bool number = type == kDataTypeIntKey || type == kDataTypeDoubleKey || type == kDataTypeFloatKey;
    return number ? kDataTypeNumberKey : type;
}

/// A campaign's identifier as it stands in an occurrence key.
std::string identifierText(const Value& identifier) {
    const auto* text = identifier.ifString();
    return text != nullptr ? *text : textOf(identifier);
}

}  // namespace

EventRecorder::EventRecorder(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      session_(needs.session),
      validation_(needs.validation),
      budget_(needs.budget),
      json_(needs.json) {}

// --- Parameters ---

void EventRecorder::addDate(EventParameters& parameters, std::string_view key, const std::optional<Date>& date) const {
    if (!validation_.isNameValid(key)) return;
    if (!date) return refuseValue(key);
    parameters.set(key, helper_.getRFCFromNSDate(*date));
}

void EventRecorder::addAll(EventParameters& parameters, const Dictionary& added) const {
    for (const auto& [key, value] : added) {
        if (validation_.isNameValid(std::string_view(key)) && !value.isAbsent()) addDetected(parameters, key, value);
    }
}

void EventRecorder::addDetected(EventParameters& parameters, const std::string& key, const Value& value) const {
    if (const auto* text = value.ifString()) {
        text->empty() ? refuseValue(key) : parameters.set(key, *text);
    } else if (value.ifInt32() != nullptr || value.ifBoolean() != nullptr) {
        parameters.set(key, Value(value));
    } else if (const auto number = value.number()) {
        parameters.set(key, *number);
    } else if (const auto* date = value.ifDate()) {
        parameters.set(key, helper_.getRFCFromNSDate(*date));
    } else if (const auto* array = value.ifArray()) {
        parameters.set(key, makeArrayValid(*array));
    } else {
        reports_.feed(kWarningMessageForEventValue, [&] {
            return Dictionary{{"value", value},
                              {"warning", textOf(value) + " value could not be associated with a suitable data type."}};
        });
    }
}

void EventRecorder::refuseValue(std::string_view key) const noexcept {
    reports_.note([&] {
        return "Left out the parameter \"" + std::string(key) +
               "\": a text must not be empty, an integer must be above 0, another number finite, a date given.";
    });
}

// --- Building ---

void EventRecorder::build(std::string_view name, const std::shared_ptr<EventParameters>& parameters) noexcept {
    guarded(reports_, "-[OrbinelEvent build]", [&] {
        if (!validation_.isNameValid(name)) {
            return reports_.note(
                [&] { return "Dropped an event: its name \"" + std::string(name) + "\" is not valid."; });
        }
        if (budget_.isEventThrottled(name)) {
            return reports_.note(
                [&] { return "Dropped the event \"" + std::string(name) + "\": beyond the session's budget."; });
        }
        // Whoever adds a parameter stores what a record may hold, and nothing else: no look at them again.
        assert(validation_.isParametersValid(parameters->snapshot()));
        EventRecord record{std::string(name), helper_.getNowAsTimestamp(), parameters};
        feedToWizard(record);
        const bool campaignsHaveArrived = campaigns->startRequestCompleted();
        store(std::move(record), campaignsHaveArrived);
        if (campaignsHaveArrived) handleCommonEventJobs(name, *parameters);
    });
}

void EventRecorder::recordInternalEvent(std::string_view name, const Dictionary& parameters) noexcept {
    guarded(reports_, "-[OrbinelEvent addParameters]", [&] {
        const auto taken = std::make_shared<EventParameters>();
        addAll(*taken, parameters);
        build(name, taken);
    });
}

void EventRecorder::feedToWizard(const EventRecord& record) noexcept {
    constexpr bool isError = false;
    constexpr bool shouldFeed = true;
    if (!reports_.feedsAreTaken(shouldFeed)) return;
    if (record.event_params->empty()) {
        reports_.feed(
            "tagEvent", [&] { return toDictionary(record); }, isError, shouldFeed);
    } else {
        reports_.feed(
            "tagEventWithParameters", [&] { return getEventPayloadForWizard(record); }, isError, shouldFeed);
    }
}

Dictionary EventRecorder::getEventPayloadForWizard(const EventRecord& record) {
    Array described;
    for (const auto& [key, value] : record.event_params->snapshot()) {
        described.emplace_back(
            Dictionary{{"type", wizardTypeOf(value)}, {"name", removeCustomPrefix(key)}, {"value", value}});
    }
    auto payload = toDictionary(record);
    payload.set("event_params", std::move(described));
    return payload;
}

// --- In-app triggers ---

/// Events that come before the campaigns are remembered by name; they are checked when the campaigns arrive.
void EventRecorder::store(EventRecord record, bool campaignsHaveArrived) {
    constexpr std::size_t usualEvents = MAX_EVENT_COUNT_PER_SESSION;
    session_.update([&](SessionRecord& session) {
        if (session.custom_events.empty()) session.custom_events.reserve(usualEvents);
        if (!campaignsHaveArrived) {
            if (session.eventsBeforeInapp.empty()) session.eventsBeforeInapp.reserve(usualEvents);
            session.eventsBeforeInapp.push_back(record.event_name);
        }
        session.custom_events.push_back(std::move(record));
    });
}

void EventRecorder::handleCommonEventJobs(std::string_view name, const EventParameters& parameters) noexcept {
    guarded(reports_, "-[OrbinelEvent handleCommonEventJobs:]", [&] {
        const auto triggered = campaigns->campaignsTriggeredBy(name);
        if (triggered.empty()) return;
        const auto snapshot = parameters.snapshot();
        for (const auto& campaign : triggered) countForCampaign(name, snapshot, *campaign);
    });
}

void EventRecorder::countForCampaign(std::string_view name, const Dictionary& parameters, const Dictionary& campaign) {
    if (!campaigns->checkIfParamsAreMatching(parameters, campaign["trigger_params"])) return;
    const auto key = eventKeyForEvent(name).value_or(std::string()) + "-" + identifierText(campaign["inapp_id"]);
    const auto count = session_.update([&](SessionRecord& record) {
        constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();
        const auto before = record.eventOccurrences[key].integer().value_or(0);
        const auto now = static_cast<std::int32_t>(std::min(before + 1, highest));
        record.eventOccurrences.set(key, now);
        return now;
    });
    if (count >= wholeNumberOf(campaign["trigger_count"]).value_or(1)) campaigns->checkInapp(name, parameters, count);
}

std::optional<std::string> EventRecorder::eventKeyForEvent(std::string_view name) const noexcept {
    return guarded(reports_, "-[OrbinelEvent eventKeyForEvent:]", std::optional<std::string>(), [&] {
        auto key = json_.serialise(Dictionary{{"event_name", name}}, platform::JsonStyle::compactSorted);
        if (!key) validation_.logInvalidDict("JSON is not valid.");
        return key;
    });
}

}  // namespace orbinel
