#include "apps/orbinel/play/device_facts.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "apps/orbinel/play/fields.hpp"
#include "base/ascii.hpp"
#include "base/value_content.hpp"

namespace orbinel::tool {

namespace {

using platform::Connection;
using platform::DeviceFacts;
using platform::NotificationPermission;
using OptionalText = std::optional<std::string>;

constexpr double mostPoints = 100'000;

template <typename Content>
using Choice = std::pair<std::string_view, Content>;

template <typename Content>
Content oneOf(const Value& value, std::string_view name, std::span<const Choice<Content>> choices) {
    const auto& text = requireText(value, inQuotes(name));
    std::string texts;
    for (const auto& [choice, content] : choices) {
        if (choice == text) return content;
        texts += (texts.empty() ? "" : ", ") + inQuotes(choice);
    }
    throw Unusable(inQuotes(name) + " cannot be " + inQuotes(text) + ", only one of " + texts);
}

/// Null: the platform does not know.
OptionalText textOrNothing(const Value& value, std::string_view name) {
    return value.isNull() ? std::nullopt : OptionalText(requireText(value, inQuotes(name)));
}

FactChange deviceFact(const std::function<void(DeviceFacts&)>& change) {
    return [change](const DeviceParts& parts) { parts.device.change(change); };
}

FactChange bundleFact(const std::function<void(platform::ApplicationBundle&)>& change) {
    return [change](const DeviceParts& parts) {
        auto bundle = parts.application.bundle();
        change(bundle);
        parts.application.setBundle(std::move(bundle));
    };
}

/// A fact of the device that is a text.
template <OptionalText DeviceFacts::*member>
FactChange deviceText(const Value& value, std::string_view name) {
    return deviceFact([text = textOrNothing(value, name)](DeviceFacts& facts) { facts.*member = text; });
}

template <OptionalText platform::ApplicationBundle::*member>
FactChange bundleText(const Value& value, std::string_view name) {
    return bundleFact(
        [text = textOrNothing(value, name)](platform::ApplicationBundle& bundle) { bundle.*member = text; });
}

FactChange appState(const Value& value, std::string_view name) {
    using platform::ApplicationState;
    static constexpr std::array<Choice<ApplicationState>, 3> states{{{"active", ApplicationState::active},
                                                                     {"inactive", ApplicationState::inactive},
                                                                     {"background", ApplicationState::background}}};
    const auto state = oneOf<ApplicationState>(value, name, states);
    return [state](const DeviceParts& parts) { parts.application.setState(state); };
}

FactChange orientation(const Value& value, std::string_view name) {
    static constexpr std::array<Choice<bool>, 2> orientations{{{"portrait", true}, {"landscape", false}}};
    const bool portrait = oneOf<bool>(value, name, orientations);
    return [portrait](const DeviceParts& parts) { parts.application.setPortrait(portrait); };
}

FactChange pushPermission(const Value& value, std::string_view name) {
    static constexpr std::array<Choice<NotificationPermission>, 3> permissions{
        {{"granted", NotificationPermission::granted},
         {"denied", NotificationPermission::denied},
         {"not_determined", NotificationPermission::notDetermined}}};
    const auto permission = oneOf<NotificationPermission>(value, name, permissions);
    return [permission](const DeviceParts& parts) { parts.notifications.setSettings({permission, false}); };
}

FactChange connection(const Value& value, std::string_view name) {
    static constexpr std::array<Choice<Connection>, 4> connections{{{"wifi", Connection::wifi},
                                                                    {"cellular", Connection::cellular},
                                                                    {"none", Connection::none},
                                                                    {"unknown", Connection::unknown}}};
    const auto chosen = oneOf<Connection>(value, name, connections);
    return deviceFact([chosen](DeviceFacts& facts) { facts.connection = chosen; });
}

FactChange locationEnabled(const Value& value, std::string_view name) {
    const bool enabled = requireBoolean(value, inQuotes(name));
    return deviceFact([enabled](DeviceFacts& facts) { facts.locationAllowed = enabled; });
}

FactChange battery(const Value& value, std::string_view name) {
    std::optional<double> percent;
    if (!value.isNull()) percent = requireNumber(value, inQuotes(name), 0, 100);
    return deviceFact([percent](DeviceFacts& facts) { facts.battery = percent; });
}

/// Both the person's language and the application's: the one in which the application runs.
FactChange language(const Value& value, std::string_view name) {
    return [text = textOrNothing(value, name)](const DeviceParts& parts) {
        parts.device.change([&](DeviceFacts& facts) { facts.preferredLanguage = text; });
        auto bundle = parts.application.bundle();
        bundle.preferredLocalisation = text;
        parts.application.setBundle(std::move(bundle));
    };
}

FactChange timezone(const Value& value, std::string_view name) {
    return [text = textOrNothing(value, name)](const DeviceParts& parts) {
        parts.device.change([&](DeviceFacts& facts) { facts.timezone = text; });
        parts.scheduler.setTimeZone(text.value_or("UTC"));
    };
}

double points(Fields& fields, std::string_view key) {
    return requireNumber(fields.require(key), inQuotes(key), 0, mostPoints);
}

FactChange screen(const Value& value, std::string_view name) {
    std::optional<platform::ScreenFacts> facts;
    if (!value.isNull()) {
        Fields fields(value, inQuotes(name));
        facts = platform::ScreenFacts{points(fields, "width"), points(fields, "height"), points(fields, "scale")};
        fields.expectNoOthers();
    }
    return deviceFact([facts](DeviceFacts& device) { device.screen = facts; });
}

FactChange safeArea(const Value& value, std::string_view name) {
    std::optional<platform::SafeArea> area;
    if (!value.isNull()) {
        Fields fields(value, inQuotes(name));
        area = platform::SafeArea{points(fields, "top"), points(fields, "bottom")};
        fields.expectNoOthers();
    }
    return deviceFact([area](DeviceFacts& device) { device.safeArea = area; });
}

FactChange keyboardOpen(const Value& value, std::string_view name) {
    const bool open = requireBoolean(value, inQuotes(name));
    return [open](const DeviceParts& parts) { parts.interface.setKeyboardOpen(open); };
}

FactChange accelerometer(const Value& value, std::string_view name) {
    const bool available = requireBoolean(value, inQuotes(name));
    return [available](const DeviceParts& parts) { parts.accelerometer.setAvailable(available); };
}

/// What the package says it is opened by, in lower case.
std::vector<std::string> urlSchemes(const Dictionary& information) {
    std::vector<std::string> schemes;
    const auto* types = information["CFBundleURLTypes"].ifArray();
    for (const auto& type : types != nullptr ? *types : Array()) {
        const auto* declared = dictionaryOrEmpty(type)["CFBundleURLSchemes"].ifArray();
        for (const auto& scheme : declared != nullptr ? *declared : Array()) {
            if (const auto* text = scheme.ifString()) schemes.push_back(ascii::lowerCased(*text));
        }
    }
    return schemes;
}

FactChange bundleInformation(const Value& value, std::string_view name) {
    return bundleFact([information = requireDictionary(value, inQuotes(name))](platform::ApplicationBundle& bundle) {
        bundle.information = information;
        bundle.urlSchemes = urlSchemes(information);
    });
}

struct Fact {
    std::string_view name;
    FactChange (*read)(const Value& value, std::string_view name);
};

constexpr std::array<Fact, 20> facts{{
    {"app_state", appState},
    {"orientation", orientation},
    {"push_permission", pushPermission},
    {"location_enabled", locationEnabled},
    {"connection", connection},
    {"battery", battery},
    {"os_version", deviceText<&DeviceFacts::osVersion>},
    {"app_version", bundleText<&platform::ApplicationBundle::version>},
    {"package_name", bundleText<&platform::ApplicationBundle::identifier>},
    {"language", language},
    {"timezone", timezone},
    {"idfv", deviceText<&DeviceFacts::vendorIdentifier>},
    {"idfa", deviceText<&DeviceFacts::advertisingIdentifier>},
    {"carrier", deviceText<&DeviceFacts::carrier>},
    {"model", deviceText<&DeviceFacts::machine>},
    {"screen", screen},
    {"safe_area", safeArea},
    {"keyboard_open", keyboardOpen},
    {"accelerometer", accelerometer},
    {"bundle_info", bundleInformation},
}};

const Fact& findFact(std::string_view name) {
    const auto fact = std::find_if(facts.begin(), facts.end(), [&](const Fact& one) { return one.name == name; });
    if (fact == facts.end()) throw Unusable("there is no fact " + inQuotes(name) + " of the device");
    return *fact;
}

}  // namespace

std::vector<FactChange> readFacts(const Value& json) {
    std::vector<FactChange> changes;
    for (const auto& [name, value] : requireDictionary(json, "\"device\"")) {
        const auto& fact = findFact(name);
        changes.push_back(fact.read(value, fact.name));
    }
    return changes;
}

}  // namespace orbinel::tool
