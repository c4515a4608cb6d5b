#include "events/validation.hpp"

#include <algorithm>
#include <array>

#include "base/guard.hpp"

namespace orbinel {

namespace {

constexpr std::string_view kIsNameValid = "isNameValid";
constexpr std::string_view kWizardValueKey = "value";
constexpr std::string_view kWizardWarningKey = "warning";

constexpr bool isLowerLetter(char c) noexcept { return c >= 'a' && c <= 'z'; }

/// By character code: names are checked for every event and parameter.
constexpr auto nameCharacters = [] {
    std::array<bool, 256> table{};
    for (std::size_t code = 0; code < table.size(); ++code) {
        const auto c = static_cast<char>(code);
        table[code] = isLowerLetter(c) || (c >= '0' && c <= '9') || c == '_';
    }
    return table;
}();

bool isSupportedParameter(const Value& value) noexcept {
    return !value.isAbsent() && !value.isNull() && value.kind() != Value::Kind::date;
}

}  // namespace

bool Validation::isNameValid(std::string_view name) const noexcept {
    if (name.empty()) {
        reports_.feed(kIsNameValid, [] {
            return Dictionary{{std::string(kWizardWarningKey), "Event or Attribute name cannot be empty."}};
        });
        return false;
    }
    if (hasFormOfName(name)) return true;
    reports_.feed(kIsNameValid, [&] {
        return Dictionary{{std::string(kWizardValueKey), name},
                          {std::string(kWizardWarningKey), "This is not a valid name for an Event or an Attribute"}};
    });
    return false;
}

bool Validation::hasFormOfName(std::string_view name) noexcept {
    return !name.empty() && isLowerLetter(name.front()) &&
           std::all_of(name.begin(), name.end(), [](unsigned char c) { return nameCharacters[c]; });
}

bool Validation::isNameValid(const Value& name) const noexcept {
    return isNameValid(std::string_view(name.stringOrEmpty()));
}

bool Validation::isParametersValid(const Value& parameters) const noexcept {
    if (const auto* dictionary = parameters.ifDictionary()) return isParametersValid(*dictionary);
    logInvalidEvent(parameters, "Invalid parameters structure.");
    return false;
}

bool Validation::isParametersValid(const Dictionary& parameters) const noexcept {
    const bool supported = std::all_of(parameters.begin(), parameters.end(), [](const Dictionary::Entry& entry) {
        return isSupportedParameter(entry.second);
    });
    if (!supported) logInvalidEvent(parameters, "Value of parameter is an unsupported type");
    return supported;
}

void Validation::filterInvalidEventParams(Dictionary& payload) const noexcept {
    guarded(reports_, {"+[OrbinelHelper filterInvalidEventParams:]", DescriptionForm::withReason}, [&] {
        auto* stored = payload.find("custom_events");
        auto* events = stored != nullptr ? stored->ifArray() : nullptr;
        if (events == nullptr) return;
        std::erase_if(*events, [&](const Value& event) {
            const auto* record = event.ifDictionary();
            if (record == nullptr || (*record)["event_name"].stringOrEmpty().empty()) {
                logInvalidEvent(event, "Event name is empty.");
                return true;
            }
            const auto& parameters = (*record)["event_params"];
            if (parameters.ifDictionary() != nullptr) return false;
            logInvalidEvent(parameters, "Invalid parameters structure.");
            return true;
        });
    });
}

void Validation::logInvalidEvent(const Value& object, std::string_view message) const noexcept {
    reports_.log(LogType::event, LogLevel::error, message, [&] { return Dictionary{{"eventParams", object}}; });
}

void Validation::logInvalidDict(std::string_view message) const noexcept {
    reports_.log(LogType::common, LogLevel::error, message, [] { return Dictionary{{"function", "sendRequest"}}; });
}

}  // namespace orbinel
