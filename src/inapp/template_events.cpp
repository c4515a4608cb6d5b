#include "inapp/template_events.hpp"

#include <string>
#include <utility>

#include "base/guard.hpp"
#include "base/number_reading.hpp"
#include "events/data_types.hpp"
#include "events/event_parameters.hpp"

namespace orbinel {

namespace {

constexpr std::string_view leadCollected = "lead_collected";

const Array& arrayOrEmpty(const Value& value) {
    static const Array none;
    const auto* array = value.ifArray();
    return array != nullptr ? *array : none;
}

}  // namespace

TemplateEvents::TemplateEvents(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      recorder_(needs.recorder),
      presented_(needs.presented),
      lifetime_(needs.lifetime),
      json_(needs.json),
      scheduler_(needs.scheduler),
      notificationCentre_(needs.notificationCentre) {}

// --- By notification ---

void TemplateEvents::addObserverForEventInapps() noexcept {
    guarded(reports_, "+[OrbinelTemplateStore addObserverForEventInapps]", [&] {
        platform::Ticket observation;
        {
            const MutexLock lock(mutex_);
            std::swap(observation, observation_);
        }
        observation.cancel();
        observation = notificationCentre_.addObserver(
            event_base_inapp, lifetime_.whileAlive([this](const Dictionary& info) { tagEventsFromTemplate(info); }));
        const MutexLock lock(mutex_);
        std::swap(observation, observation_);
    });
}

void TemplateEvents::sendNotificationForEventBaseInapp(const Array& events) noexcept {
    guarded(reports_, "+[OrbinelTemplateStore sendNotificationForEventBaseInapp:]", [&] {
        setCurrentEvents(events);
        notificationCentre_.post(event_base_inapp, Dictionary{{"events", events}});
    });
}

void TemplateEvents::tagEventsFromTemplate(const Dictionary& info) noexcept {
    guarded(reports_, "+[OrbinelTemplateStore tagEventsFromTemplate:]", [&] {
        for (const auto& event : arrayOrEmpty(info["events"])) {
            const auto* fields = event.ifDictionary();
            if (fields != nullptr && helper_.shouldProceed()) tag(*fields);
        }
        clearEvents();
    });
}

Array TemplateEvents::returnCurrentEvents() const noexcept {
    return guarded(reports_, "+[OrbinelTemplateStore returnCurrentEvents]", Array(), [&] {
        const MutexLock lock(mutex_);
        return currentEvents_;
    });
}

void TemplateEvents::clearEvents() noexcept { setCurrentEvents({}); }

void TemplateEvents::setCurrentEvents(Array events) {
    const MutexLock lock(mutex_);
    currentEvents_.swap(events);
}

// --- One event ---

void TemplateEvents::tag(const Dictionary& event) {
    const auto& name = event["name"].stringOrEmpty();
    recorder_.build(
        name, name == leadCollected ? returnLeadCollectedParameters() : parametersOf(arrayOrEmpty(event["params"])));
}

/// The message's own identifiers, which may take 64 bits; one that is not above zero is dropped, as of every event.
std::shared_ptr<EventParameters> TemplateEvents::returnLeadCollectedParameters() const {
    auto parameters = std::make_shared<EventParameters>();
    const auto inapp = presented_.activeInapp();
    if (inapp == nullptr) return parameters;
    const auto add = [&](std::string_view key, std::string_view field) {
        auto identifier = inappFieldNumber(*inapp, field);
        if (identifier.integer().value_or(0) > 0) parameters->set(key, std::move(identifier));
    };
    add("campaign_id", "inapp_id");
    add("variant_id", "variant_id");
    return parameters;
}

std::shared_ptr<EventParameters> TemplateEvents::parametersOf(const Array& descriptors) const {
    auto parameters = std::make_shared<EventParameters>();
    for (const auto& one : descriptors) {
        const auto descriptor = template_values::descriptorOf(one);
        if (!descriptor) continue;
        if (Validation::hasFormOfName(descriptor->key)) {
            addTo(*parameters, *descriptor);
        } else {
            recorder_.refuseKey(descriptor->key);
        }
    }
    return parameters;
}

void TemplateEvents::addTo(EventParameters& parameters, const template_values::Descriptor& descriptor) const {
    namespace values = template_values;
    const auto& [type, key, value] = descriptor;
    const auto store = [&parameters, key = descriptor.key](Value stored) {
        if (!stored.isAbsent()) parameters.set(key, std::move(stored));
    };
    if (type == kDataTypeDateKey) return recorder_.addDate(parameters, key, values::dateOf(value, scheduler_));
    if (type == kDataTypeArrayKey) return store(event_parameters::ofArray(arrayOrEmpty(value)));
    if (type == kDataTypeDoubleKey) return store(event_parameters::ofDouble(doubleValue(value).value_or(0)));
    if (type == kDataTypeBooleanKey) return store(boolValue(value).value_or(false));
    if (type == kDataTypeIntKey) return store(event_parameters::ofInt(intValue(value).value_or(0)));
    store(event_parameters::ofText(values::textOf(value, json_)));
}

}  // namespace orbinel
