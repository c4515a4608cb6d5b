#include "orbinel/orbinel.hpp"

#include <utility>

#include "base/guard.hpp"
#include "base/visit.hpp"
#include "core/current_world.hpp"
#include "core/world.hpp"

namespace orbinel {

namespace {

constexpr std::string_view signUpEvent = "sign_up_confirmation";

/// Runs the body of a public operation on the current world; without one, or when something is thrown, the neutral
/// value is returned.
template <typename Result, typename Body>
Result onWorld(const GuardedOperation& operation, Result neutral, Body&& body) noexcept {
    const Visit<World> world(current_world::get());
    if (!world) return neutral;
    return guarded(world->reports, operation, std::move(neutral), [&] { return body(*world); });
}

template <typename Body>
void onWorld(const GuardedOperation& operation, Body&& body) noexcept {
    onWorld(operation, false, [&](World& world) {
        body(world);
        return true;
    });
}

/// The same for gated operations.
template <typename Result, typename Body>
Result throughGate(const GuardedOperation& operation, Result neutral, Body&& body) noexcept {
    return onWorld(operation, neutral,
                   [&](World& world) { return world.helper.shouldProceed() ? body(world) : std::move(neutral); });
}

template <typename Body>
void throughGate(const GuardedOperation& operation, Body&& body) noexcept {
    throughGate(operation, false, [&](World& world) {
        body(world);
        return true;
    });
}

OrbinelEvent eventOf(const std::shared_ptr<World>& world, OptionalText name, bool isInternal) noexcept {
    return {std::shared_ptr<EventRecorder>(world, world != nullptr ? &world->eventRecorder : nullptr), name,
            isInternal};
}

/// Launch options nested beyond the bound count as none.
std::optional<Dictionary> acceptable(World& world, const std::optional<Dictionary>& launchOptions) {
    if (!launchOptions) return std::nullopt;
    for (const auto& [key, value] : *launchOptions) {
        if (isWithinDepth(value, maximumValueDepth - 1)) continue;
        world.reports.note("Ignored the launch options: they are nested too deeply.");
        return std::nullopt;
    }
    return launchOptions;
}

}  // namespace

bool start(platform::Services services) noexcept {
    const auto console = services.console;
    const auto refuse = [&](std::string_view sentence) {
        if (console != nullptr) console->writeLine(sentence);
        return false;
    };
    try {
        if (const auto missing = missingService(services)) return refuse(*missing);
    } catch (const std::exception& exception) {
        return refuse(exception.what());
    }
    if (!current_world::claim()) return refuse("orbinel::start: the library is already started.");
    try {
        current_world::set(World::create(std::move(services)));
        return true;
    } catch (const std::exception& exception) {
        current_world::set(nullptr);
        return refuse(exception.what());
    }
}

void shutdown() noexcept {
    const auto world = current_world::take();
    if (world != nullptr) guarded(world->reports, "orbinel::shutdown", [&] { world->end(); });
}

// --- Initialisation ---

void Orbinel::initWithLaunchOptions(const std::optional<Dictionary>& launchOptions, OptionalText partnerName,
                                    OptionalText appGroup) noexcept {
    onWorld("+[Orbinel initWithLaunchOptions:partnerName:appGroup:]", [&](World& world) {
        world.initialisation.initWithLaunchOptions(
            {acceptable(world, launchOptions), partnerName.copy(), appGroup.copy(), std::nullopt});
    });
}

void Orbinel::initWithLaunchOptions(const std::optional<Dictionary>& launchOptions, OptionalText partnerName,
                                    OptionalText appGroup, OptionalText customEndpoint) noexcept {
    onWorld("+[Orbinel initWithLaunchOptions:partnerName:appGroup:customEndpoint:]", [&](World& world) {
        world.initialisation.initWithLaunchOptions({acceptable(world, launchOptions), partnerName.copy(),
                                                    appGroup.copy(), std::optional(customEndpoint.copy())});
    });
}

void Orbinel::initSDK(OptionalText partnerName, const std::optional<Dictionary>& launchOptions) noexcept {
    onWorld("+[Orbinel initSDK:launchOptions:]",
            [&](World& world) { world.initialisation.initSDK(partnerName.copy(), acceptable(world, launchOptions)); });
}

void Orbinel::reinitWithPartnerName(OptionalText partnerName) noexcept {
    onWorld("+[Orbinel reinitWithPartnerName:]",
            [&](World& world) { world.initialisation.reinitWithPartnerName(partnerName.copy()); });
}

bool Orbinel::partnerNameIsValid(const Value& partnerName) noexcept {
    return onWorld("+[Orbinel partnerNameIsValid:]", false,
                   [&](World& world) { return world.initialisation.partnerNameIsValid(partnerName); });
}

void Orbinel::disableAutoIntegration() noexcept {
    onWorld("+[Orbinel disableAutoIntegration]", [](World& world) { world.initialisation.disableAutoIntegration(); });
}

void Orbinel::setHybridSDKVersion(OptionalText version) noexcept {
    onWorld("+[Orbinel setHybridSDKVersion:]",
            [&](World& world) { world.deviceAttributes.setHybridSDKVersion(version.copy()); });
}

void Orbinel::hybridApplicationDidBecomeActive() noexcept {
    onWorld("+[Orbinel hybridApplicationDidBecomeActive]", [](World& world) {
        world.lifecycle.hybridApplicationDidBecomeActive(world.initialisation.regularInitHasDone());
    });
}

// --- Events ---

OrbinelEvent Orbinel::tagEvent(OptionalText name) noexcept {
    const Visit<World> world(current_world::get());
    const bool open = world && world->helper.shouldProceed();
    return eventOf(world.target(), open ? name : OptionalText(""), false);
}

void Orbinel::signUpConfirmation() noexcept {
    throughGate("+[Orbinel signUpConfirmation]", [](World& world) {
        world.eventRecorder.build(signUpEvent, std::make_shared<EventParameters>());
        world.reports.feed("signUpConfirmation", [] { return Dictionary{{"value", "User sign up event sent"}}; });
    });
}

OrbinelEvent::OrbinelEvent(OptionalText name) noexcept : OrbinelEvent(eventOf(current_world::get(), name, false)) {}

// --- The user ---

std::optional<std::string> Orbinel::getOrbinelID() noexcept {
    return throughGate("+[Orbinel getOrbinelID]", std::optional<std::string>(),
                       [](World& world) { return world.identity.getOrbinelID(); });
}

void Orbinel::setIdListener(TargetAction<const std::string&> listener) noexcept {
    throughGate("+[Orbinel registerOrbinelIDListenerWithSelector:sender:]",
                [&](World& world) { world.idListeners.registerOrbinelIDListener(std::move(listener)); });
}

// --- Callbacks ---

void Orbinel::setCallback(TargetAction<const Dictionary&> callback) noexcept {
    onWorld("+[Orbinel registerOrbinelCallbackWithSelector:sender:]", [&](World& world) {
        world.sessionStart.setSessionStartedCallback(std::move(callback));
        world.reports.feed(
            "registerOrbinelCallback", [] { return Dictionary(); }, false, true);
    });
}

// --- Diagnosis ---

void Orbinel::sendError(OptionalText error, OptionalText desc) noexcept {
    onWorld("+[Orbinel sendError:desc:]", [&](World& world) { world.reports.sendError(error.view(), desc.view()); });
}

std::string Orbinel::getSDKVersion() noexcept {
    return onWorld("+[Orbinel getSDKVersion]", std::string(ORBINEL_VERSION),
                   [](World& world) { return world.deviceAttributes.getSDKVersion(); });
}

void Orbinel::setDevelopmentLog(bool on) noexcept {
    onWorld("+[Orbinel setDevelopmentLog:]", [&](World& world) { world.reports.setDevelopmentLog(on); });
}

}  // namespace orbinel
