#include "inapp/campaign_selection.hpp"

#include "base/guard.hpp"
#include "base/value_content.hpp"
#include "base/whole_number.hpp"
#include "inapp/condition_matching.hpp"
#include "inapp/inapp_status.hpp"

namespace orbinel {

namespace {

constexpr std::string_view testInapp = "test_inapp";

// A message for the control group is logged by an event, which may trigger another such message. Without an end to it,
// two campaigns that trigger each other would call themselves for ever.
thread_local bool loggingControlGroup = false;

class ControlGroupBeingLogged {
public:
    ControlGroupBeingLogged() { loggingControlGroup = true; }
    ~ControlGroupBeingLogged() { loggingControlGroup = false; }
    ControlGroupBeingLogged(const ControlGroupBeingLogged&) = delete;
    ControlGroupBeingLogged& operator=(const ControlGroupBeingLogged&) = delete;
};

bool isForControlGroup(const Dictionary& content) { return int32Of(content["type"]) == kCONTROLGROUP; }

InappLayout layoutOf(const Dictionary& inapp, const Dictionary& content) {
    const auto& layout = dictionaryOrEmpty(content["template_layout"]);
    return {.type = int32Of(content["inappType"]),
            .layoutStyle = int32Of(content["layoutStyle"]),
            .buttonLayout = int32Of(content["buttonLayout"]),
            .delay = int32Of(inapp["delay"]),
            .position = int32Of(layout["position"]),
            .notFullHeight = layout["height"].number() != 1.0};
}

}  // namespace

CampaignSelection::CampaignSelection(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      inapps_(needs.inapps),
      frequencyCap_(needs.frequencyCap),
      presented_(needs.presented),
      logs_(needs.logs),
      choice_({needs.reports, needs.inapps}) {}

bool CampaignSelection::checkIfParamsAreMatching(const Dictionary& parameters, const Value& expected) const noexcept {
    return guarded(reports_, "+[OrbinelInapp checkIfParamsAreMatching:expectedParams:]", false,
                   [&] { return orbinel::checkIfParamsAreMatching(parameters, expected); });
}

// --- Checking ---

bool CampaignSelection::checkInapp(std::string_view eventName, std::int32_t triggerCount) noexcept {
    return checkInapp(eventName, {}, triggerCount);
}

bool CampaignSelection::checkInapp(std::string_view eventName, const Dictionary& parameters,
                                   std::int32_t triggerCount) noexcept {
    return guarded(reports_, "+[OrbinelInapp checkInapp:triggerCount:]", false, [&] {
        if (!isShowingPossible(eventName)) return false;
        const auto inapp = choice_.getInapp(eventName, parameters, triggerCount);
        const auto event = [&] { return Dictionary{{"event_name", eventName}}; };
        if (inapp == nullptr) {
            logStatus(reports_, InappStatus::notFound, event);
            return false;
        }
        if (presented_.templatesAreSetToBeHidden()) return block(*inapp);
        prepareInappToShow(inapp);
        logStatus(reports_, InappStatus::selected, event);
        return true;
    });
}

bool CampaignSelection::isShowingPossible(std::string_view eventName) {
    const auto event = [&] { return Dictionary{{"event_name", eventName}}; };
    if (presenter->isInAppOnTheScreen()) {
        logStatus(reports_, InappStatus::otherOnScreen, event);
        return false;
    }
    const bool portrait = presenter->isOrientationPortrait();
    if (!portrait) logStatus(reports_, InappStatus::orientationNotPortrait, event);
    return portrait;
}

/// Always false: nothing goes to presentation.
bool CampaignSelection::block(const Dictionary& inapp) {
    logs_.logBlockedInAppMessage(inapp);
    reports_.log(LogType::inapp, LogLevel::info, "Blocked in-app message removed.");
    return false;
}

// --- Handing over ---

void CampaignSelection::prepareInappToShow(const Campaign& inapp) noexcept {
    guarded(reports_, "+[OrbinelInapp prepareInappToShow:]", [&] {
        if (!helper_.shouldProceed()) return;
        if (frequencyCap_.isFreqCapped(*inapp)) {
            return logStatus(reports_, InappStatus::frequencyCapped, [&] { return inappIdentity(inapp.get()); });
        }
        present(inapp);
    });
}

void CampaignSelection::present(const Campaign& inapp) {
    const auto& content = dictionaryOrEmpty((*inapp)["content"]);
    if (!isForControlGroup(content)) {
        presented_.present(inapp);
        return presenter->createInappAfterAppropriateDelaysWithType(inapp, layoutOf(*inapp, content));
    }
    if (loggingControlGroup) {
        return reports_.note("Dropped a control group's message: another's log triggered it.");
    }
    logControlGroup(*inapp);
}

/// Another message that has been handed over stays the active one: it is still to be built.
void CampaignSelection::logControlGroup(const Dictionary& inapp) {
    const ControlGroupBeingLogged logging;
    InappButton button;
    button.tag = kDISSMISSTYPECONTROL;
    logs_.addControlGroupLog(inapp);
    buttonClicks->inappButtonClicked(button);
    reports_.log(LogType::inapp, LogLevel::error, "Can't show inapp.", [] {
        return Dictionary{{"reason", "inappPosition -1"}};
    });
}

void CampaignSelection::showCustomInapp(const Dictionary& content, std::string_view eventName) noexcept {
    guarded(reports_, "+[OrbinelInapp showCustomInapp:event:]", [&] {
        inapps_.forgetNonEventBasedInapps();
        inapps_.inappToMemory({Dictionary{{"inapp_id", 0},
                                          {"priority", 1},
                                          {"trigger", eventName},
                                          {"variant_id", 1},
                                          {"delay", 0},
                                          {"content", content}}});
        if (eventName != testInapp) return;
        if (checkInapp(testInapp, 1)) presenter->showInapp();
    });
}

void CampaignSelection::showTestInapp(const Dictionary& content, const Dictionary& pushInfo) noexcept {
    guarded(reports_, "+[Orbinel showTestInapp:pushInfo:]", [&] {
        reports_.feed("testInAppReceived", [&] { return pushInfo; });
        showCustomInapp(content, testInapp);
    });
}

}  // namespace orbinel
