#include "orbinel/event.hpp"

#include <exception>
#include <utility>

#include "base/guard.hpp"
#include "base/visit.hpp"
#include "events/event_parameters.hpp"
#include "events/event_recorder.hpp"

namespace orbinel {

// Out of memory leaves an event without parameters, on which every operation does nothing.

OrbinelEvent::OrbinelEvent(LibraryPart<EventRecorder> recorder, OptionalText name, bool isInternal) noexcept
    : recorder_(recorder), isInternal_(isInternal) {
    try {
        name_ = name.view();
        parameters_ = std::make_shared<EventParameters>();
    } catch (const std::exception&) {
        parameters_.reset();
    }
}

OrbinelEvent::OrbinelEvent(const OrbinelEvent& other) noexcept
    : recorder_(other.recorder_), isInternal_(other.isInternal_) {
    try {
        name_ = other.name_;
        parameters_ = std::make_shared<EventParameters>(other.getParameters());
    } catch (const std::exception&) {
        parameters_.reset();
    }
}

OrbinelEvent& OrbinelEvent::operator=(const OrbinelEvent& other) noexcept {
    if (this != &other) *this = OrbinelEvent(other);
    return *this;
}

OrbinelEvent::OrbinelEvent(OrbinelEvent&&) noexcept = default;
OrbinelEvent& OrbinelEvent::operator=(OrbinelEvent&&) noexcept = default;
OrbinelEvent::~OrbinelEvent() = default;

/// Stores what `makeValue` gives. A valid parameter needs nothing of the library, so none of it is looked up.
template <typename MakeValue>
void OrbinelEvent::store(const char* operation, OptionalText key, MakeValue&& makeValue) noexcept {
    if (parameters_ == nullptr) return;
    if (!Validation::hasFormOfName(key.view())) {
        return visit(operation, [&](const EventRecorder& recorder) { recorder.refuseKey(key.view()); });
    }
    try {
        if (Value value = makeValue(); !value.isAbsent()) return parameters_->set(key.view(), std::move(value));
        visit(operation, [&](const EventRecorder& recorder) { recorder.refuseValue(key.view()); });
    } catch (const std::exception& exception) {
        if (const Visit<EventRecorder> recorder(recorder_); recorder) {
            reportException(recorder->reports(), operation, exception.what());
        }
    }
}

/// Runs a step that needs the library, while that runs.
template <typename Step>
void OrbinelEvent::visit(const char* operation, Step&& step) noexcept {
    if (parameters_ == nullptr) return;
    const Visit<EventRecorder> recorder(recorder_);
    if (recorder) guarded(recorder->reports(), operation, [&] { step(*recorder); });
}

OrbinelEvent& OrbinelEvent::addParameterWithString(OptionalText key, OptionalText value) & noexcept {
    store("-[OrbinelEvent addParameterWithString]", key, [&] { return event_parameters::ofText(value); });
    return *this;
}

OrbinelEvent& OrbinelEvent::addParameterWithInt(OptionalText key, std::int32_t value) & noexcept {
    store("-[OrbinelEvent addParameterWithInt]", key, [&] { return event_parameters::ofInt(value); });
    return *this;
}

OrbinelEvent& OrbinelEvent::addParameterWithDouble(OptionalText key, double value) & noexcept {
    store("-[OrbinelEvent addParameterWithDouble]", key, [&] { return event_parameters::ofDouble(value); });
    return *this;
}

OrbinelEvent& OrbinelEvent::addParameterWithBoolean(OptionalText key, bool value) & noexcept {
    store("-[OrbinelEvent addParameterWithBoolean]", key, [&] { return Value(value); });
    return *this;
}

OrbinelEvent& OrbinelEvent::addParameterWithArray(OptionalText key, const Array& value) & noexcept {
    store("-[OrbinelEvent addParameterWithArray]", key, [&] { return event_parameters::ofArray(value); });
    return *this;
}

OrbinelEvent& OrbinelEvent::addParameterWithDate(OptionalText key, std::optional<Date> value) & noexcept {
    visit("-[OrbinelEvent addParameterWithDate]",
          [&](const EventRecorder& recorder) { recorder.addDate(*parameters_, key.view(), value); });
    return *this;
}

OrbinelEvent& OrbinelEvent::addParameters(const Dictionary& parameters) & noexcept {
    visit("-[OrbinelEvent addParameters]",
          [&](const EventRecorder& recorder) { recorder.addAll(*parameters_, parameters); });
    return *this;
}

OrbinelEvent&& OrbinelEvent::addParameterWithString(OptionalText key, OptionalText value) && noexcept {
    return std::move(addParameterWithString(key, value));
}
OrbinelEvent&& OrbinelEvent::addParameterWithInt(OptionalText key, std::int32_t value) && noexcept {
    return std::move(addParameterWithInt(key, value));
}
OrbinelEvent&& OrbinelEvent::addParameterWithDouble(OptionalText key, double value) && noexcept {
    return std::move(addParameterWithDouble(key, value));
}
OrbinelEvent&& OrbinelEvent::addParameterWithBoolean(OptionalText key, bool value) && noexcept {
    return std::move(addParameterWithBoolean(key, value));
}
OrbinelEvent&& OrbinelEvent::addParameterWithDate(OptionalText key, std::optional<Date> value) && noexcept {
    return std::move(addParameterWithDate(key, value));
}
OrbinelEvent&& OrbinelEvent::addParameterWithArray(OptionalText key, const Array& value) && noexcept {
    return std::move(addParameterWithArray(key, value));
}
OrbinelEvent&& OrbinelEvent::addParameters(const Dictionary& parameters) && noexcept {
    return std::move(addParameters(parameters));
}

void OrbinelEvent::build() noexcept {
    const Visit<EventRecorder> recorder(recorder_);
    if (recorder && parameters_ != nullptr) recorder->build(name_, parameters_);
}

std::string OrbinelEvent::getName() const noexcept {
    try {
        return name_;
    } catch (const std::exception&) {
        return {};
    }
}

Dictionary OrbinelEvent::getParameters() const noexcept {
    try {
        return parameters_ != nullptr ? parameters_->snapshot() : Dictionary();
    } catch (const std::exception&) {
        return {};
    }
}

}  // namespace orbinel
