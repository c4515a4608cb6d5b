#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "apps/orbinel/play/binding.hpp"
#include "apps/orbinel/play/fields.hpp"
#include "apps/orbinel/play/operation.hpp"
#include "orbinel/orbinel.hpp"

namespace orbinel::tool {

namespace {

using LaunchOptions = std::optional<Dictionary>;
using InitWithGroup = void (*)(const LaunchOptions&, OptionalText, OptionalText) noexcept;
using InitWithEndpoint = void (*)(const LaunchOptions&, OptionalText, OptionalText, OptionalText) noexcept;

constexpr auto registerIdListener = [](auto selector, std::weak_ptr<Target> target) {
    Orbinel::registerOrbinelIDListenerWithSelector(selector, target);
};
constexpr auto registerCallback = [](auto selector, std::weak_ptr<Target> target) {
    Orbinel::registerOrbinelCallbackWithSelector(selector, target);
};

std::vector<Operation> facadeOperations() {
    return {
        facade("initWithLaunchOptions:partnerName:appGroup:", InitWithGroup(&Orbinel::initWithLaunchOptions)),
        facade("initWithLaunchOptions:partnerName:appGroup:customEndpoint:",
               InitWithEndpoint(&Orbinel::initWithLaunchOptions)),
        facade("initSDK:launchOptions:", &Orbinel::initSDK),
        facade("reinitWithPartnerName:", &Orbinel::reinitWithPartnerName),
        facade("partnerNameIsValid:", &Orbinel::partnerNameIsValid),
        facade("disableAutoIntegration", &Orbinel::disableAutoIntegration),
        facade("setHybridSDKVersion:", &Orbinel::setHybridSDKVersion),
        facade("hybridApplicationDidBecomeActive", &Orbinel::hybridApplicationDidBecomeActive),
        facade("tagEvent:", &Orbinel::tagEvent),
        facade("signUpConfirmation", &Orbinel::signUpConfirmation),
        facade("getOrbinelID", &Orbinel::getOrbinelID),
        registration<std::string>("registerOrbinelIDListenerWithSelector:sender:", registerIdListener),
        registration<Dictionary>("registerOrbinelCallbackWithSelector:sender:", registerCallback),
        facade("sendError:desc:", &Orbinel::sendError),
        facade("getSDKVersion", &Orbinel::getSDKVersion),
        facade("setDevelopmentLog:", &Orbinel::setDevelopmentLog),
        maker<Target>("new:Target", ThingKind::target),
    };
}

std::vector<Operation> eventOperations() {
    return {
        chained("addParameterWithString", &OrbinelEvent::addParameterWithString),
        chained("addParameterWithInt", &OrbinelEvent::addParameterWithInt),
        chained("addParameterWithDouble", &OrbinelEvent::addParameterWithDouble),
        chained("addParameterWithBoolean", &OrbinelEvent::addParameterWithBoolean),
        chained("addParameterWithDate", &OrbinelEvent::addParameterWithDate),
        chained("addParameterWithArray", &OrbinelEvent::addParameterWithArray),
        chained("addParameters", &OrbinelEvent::addParameters),
        method("build", &OrbinelEvent::build),
        method("getName", &OrbinelEvent::getName),
        method("getParameters", &OrbinelEvent::getParameters),
    };
}

const std::vector<Operation>& operationsOf(ThingKind receiver) {
    static const std::vector<Operation> none;
    static const auto ofFacade = facadeOperations();
    static const auto ofEvent = eventOperations();
    switch (receiver) {
        case ThingKind::nothing:
            return ofFacade;
        case ThingKind::event:
            return ofEvent;
        default:
            return none;
    }
}

}  // namespace

std::string_view inWords(ThingKind kind) {
    switch (kind) {
        case ThingKind::nothing:
            return "nothing";
        case ThingKind::text:
            return "a text";
        case ThingKind::boolean:
            return "a boolean";
        case ThingKind::number:
            return "a number";
        case ThingKind::array:
            return "a list";
        case ThingKind::dictionary:
            return "a dictionary";
        case ThingKind::event:
            return "an event";
        case ThingKind::target:
            return "a target";
    }
    return "a thing";
}

const Operation& findOperation(std::string_view name, ThingKind receiver) {
    const auto& candidates = operationsOf(receiver);
    const auto found = std::find_if(candidates.begin(), candidates.end(),
                                    [&](const Operation& operation) { return operation.name == name; });
    if (found != candidates.end()) return *found;
    const auto owner = receiver == ThingKind::nothing ? std::string() : " of " + std::string(inWords(receiver));
    throw Unusable("there is no operation " + inQuotes(name) + owner);
}

}  // namespace orbinel::tool
