#pragma once

#include "events/event_budget.hpp"
#include "events/event_recorder.hpp"
#include "events/validation.hpp"
#include "session/collaborators.hpp"

namespace orbinel {

/// What a session makes and filters of events, by the means of the events folder.
class SessionEventsBinding final : public SessionEvents {
public:
    SessionEventsBinding(EventRecorder& recorder, const Validation& validation, EventBudget& budget)
        : recorder_(recorder), validation_(validation), budget_(budget) {}

    void recordInternalEvent(std::string_view name) override {
        recorder_.build(name, std::make_shared<EventParameters>());
    }
    void filterInvalidEventParams(Dictionary& payload) override { validation_.filterInvalidEventParams(payload); }
    void clearTotalEventCount() override { budget_.clearTotalEventCount(); }

private:
    EventRecorder& recorder_;
    const Validation& validation_;
    EventBudget& budget_;
};

}  // namespace orbinel
