#include "apps/orbinel/play/scenario_reader.hpp"

#include <exception>
#include <utility>

#include "apps/orbinel/play/repeated_key.hpp"
#include "apps/orbinel/play/step_reader.hpp"
#include "hosts/common/rapidjson_json.hpp"

namespace orbinel::tool {

namespace {

constexpr std::string_view placeholder = "${endpoint}";
constexpr double lastSecond = 253'402'300'799;  // of the year 9999

Value parsed(std::string_view text) {
    auto outcome = hosts::RapidJson().parse(text);
    if (const auto* failure = std::get_if<platform::JsonFailure>(&outcome)) {
        throw Unusable("not JSON, at byte " + std::to_string(failure->offset) + ": " + inQuotes(failure->reason));
    }
    if (const auto repeated = repeatedKey(text)) {
        throw Unusable("an object has the key " + inQuotes(repeated->key) + " twice, at byte " +
                       std::to_string(repeated->end));
    }
    return std::get<Value>(std::move(outcome));
}

std::string withEndpoint(const std::string& text, const std::optional<std::string>& endpoint) {
    std::string result;
    std::size_t begin = 0;
    for (auto found = text.find(placeholder); found != std::string::npos; found = text.find(placeholder, begin)) {
        if (!endpoint) throw Unusable("the scenario uses " + std::string(placeholder) + ", so --endpoint is needed");
        result.append(text, begin, found - begin).append(*endpoint);
        begin = found + placeholder.size();
    }
    return result.append(text, begin);
}

void replaceEndpoint(Value& value, const std::optional<std::string>& endpoint) {
    if (const auto* text = value.ifString()) {
        if (text->find(placeholder) != std::string::npos) value = withEndpoint(*text, endpoint);
    } else if (auto* array = value.ifArray()) {
        for (auto& element : *array) replaceEndpoint(element, endpoint);
    } else if (auto* dictionary = value.ifDictionary()) {
        dictionary->forEachValue([&](const std::string&, Value& entry) { replaceEndpoint(entry, endpoint); });
    }
}

std::optional<double> readClock(Fields& scenario) {
    const auto* clock = scenario.find("clock");
    if (clock == nullptr) return std::nullopt;
    Fields fields(*clock, "\"clock\"");
    const auto start = requireNumber(fields.require("start"), "\"start\"", 0, lastSecond);
    fields.expectNoOthers();
    return start;
}

Dictionary readValues(const Value& json, std::string_view what, ArgumentReader& arguments) {
    Dictionary values;
    for (const auto& [key, value] : requireDictionary(json, what)) {
        try {
            values.set(key, arguments.value(value));
        } catch (const Unusable& error) {
            throw Unusable(inQuotes(key) + " of " + std::string(what) + ": " + error.what());
        }
    }
    return values;
}

Preset readPreset(const Value& json, ArgumentReader& arguments) {
    Preset preset;
    Fields fields(json, "\"preset\"");
    if (const auto* defaults = fields.find("defaults")) {
        preset.defaults = readValues(*defaults, "\"defaults\"", arguments);
    }
    if (const auto* group = fields.find("app_group")) {
        Fields parts(*group, "\"app_group\"");
        preset.appGroupName = requireText(parts.require("name"), "\"name\" of \"app_group\"");
        preset.appGroup = readValues(parts.require("values"), "\"values\" of \"app_group\"", arguments);
        parts.expectNoOthers();
    }
    if (const auto* secure = fields.find("secure")) preset.secure = readValues(*secure, "\"secure\"", arguments);
    if (const auto* cache = fields.find("content_cache")) {
        preset.contentCache = readValues(*cache, "\"content_cache\"", arguments);
    }
    fields.expectNoOthers();
    return preset;
}

Scenario readChecked(std::string_view text, const std::optional<std::string>& endpoint, Interface interface) {
    auto json = parsed(text);
    replaceEndpoint(json, endpoint);
    Fields fields(json, "the scenario");
    ArgumentReader arguments;
    Scenario scenario;
    scenario.name = requireText(fields.require("name"), "\"name\"");
    scenario.clockStart = readClock(fields);
    if (scenario.clockStart && interface == Interface::gtk) {
        throw Unusable("the clock cannot be virtual with --ui gtk");
    }
    if (const auto* device = fields.find("device")) scenario.device = readFacts(*device);
    if (const auto* host = fields.find("host")) scenario.host = readHost(*host);
    if (const auto* preset = fields.find("preset")) scenario.preset = readPreset(*preset, arguments);
    StepReader steps(arguments, scenario.clockStart.has_value(), interface);
    scenario.steps = steps.read(fields.require("steps"));
    fields.expectNoOthers();
    return scenario;
}

}  // namespace

std::variant<Scenario, Unusable> readScenario(std::string_view text, const std::optional<std::string>& endpoint,
                                              Interface interface) noexcept {
    try {
        return readChecked(text, endpoint, interface);
    } catch (const Unusable& error) {
        return error;
    } catch (const std::exception& error) {
        return Unusable(error.what());
    }
}

}  // namespace orbinel::tool
