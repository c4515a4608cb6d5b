#include "apps/orbinel/play/fields.hpp"

#include <utility>

#include "hosts/common/rapidjson_json.hpp"

namespace orbinel::tool {

namespace {

constexpr std::size_t longestQuote = 80;  // bytes

[[noreturn]] void refuseKind(const Value& value, std::string_view what, std::string_view wanted) {
    throw Unusable(std::string(what) + " must be " + std::string(wanted) + ", not " + std::string(kindInWords(value)));
}

std::string numberInWords(double number) {
    return hosts::RapidJson().serialise(Value(number), platform::JsonStyle::compact).value_or("?");
}

}  // namespace

std::string inQuotes(std::string_view text) {
    auto shortened = std::string(text.substr(0, longestQuote));
    if (text.size() > longestQuote) shortened += "...";
    return hosts::RapidJson().serialise(Value(std::move(shortened)), platform::JsonStyle::compact).value_or("\"\"");
}

std::string_view kindInWords(const Value& value) noexcept {
    switch (value.kind()) {
        case Value::Kind::absent:
        case Value::Kind::null:
            return "null";
        case Value::Kind::boolean:
            return "a boolean";
        case Value::Kind::int32:
        case Value::Kind::int64:
        case Value::Kind::real:
            return "a number";
        case Value::Kind::string:
            return "a text";
        case Value::Kind::date:
            return "a date";
        case Value::Kind::array:
            return "a list";
        case Value::Kind::dictionary:
            return "an object";
    }
    return "a value";
}

Fields::Fields(const Value& value, std::string what)
    : dictionary_(requireDictionary(value, what)), what_(std::move(what)) {}

const Value* Fields::find(std::string_view key) {
    known_.emplace(key);
    return dictionary_.find(key);
}

const Value& Fields::require(std::string_view key) {
    const auto* value = find(key);
    if (value == nullptr) throw Unusable(what_ + " has no " + inQuotes(key));
    return *value;
}

void Fields::expectNoOthers() const {
    for (const auto& [key, value] : dictionary_) {
        if (!known_.contains(key)) throw Unusable(what_ + " cannot have the key " + inQuotes(key));
    }
}

const std::string& requireText(const Value& value, std::string_view what) {
    if (const auto* text = value.ifString()) return *text;
    refuseKind(value, what, "a text");
}

bool requireBoolean(const Value& value, std::string_view what) {
    if (const auto* boolean = value.ifBoolean()) return *boolean;
    refuseKind(value, what, "true or false");
}

const Array& requireArray(const Value& value, std::string_view what) {
    if (const auto* array = value.ifArray()) return *array;
    refuseKind(value, what, "a list");
}

const Dictionary& requireDictionary(const Value& value, std::string_view what) {
    if (const auto* dictionary = value.ifDictionary()) return *dictionary;
    refuseKind(value, what, "an object");
}

std::vector<std::string> requireTexts(const Value& value, std::string_view what) {
    std::vector<std::string> texts;
    const auto element = "an element of " + std::string(what);
    for (const auto& text : requireArray(value, what)) texts.push_back(requireText(text, element));
    return texts;
}

double requireNumber(const Value& value, std::string_view what, double lowest, double highest) {
    const auto number = value.number();
    if (!number) refuseKind(value, what, "a number");
    if (*number >= lowest && *number <= highest) return *number;
    throw Unusable(std::string(what) + " must be from " + numberInWords(lowest) + " to " + numberInWords(highest));
}

std::int64_t requireWholeNumber(const Value& value, std::string_view what, std::int64_t lowest, std::int64_t highest) {
    if (value.ifReal() != nullptr) throw Unusable(std::string(what) + " must be a whole number");
    if (!value.isNumber()) refuseKind(value, what, "a whole number");
    const auto number = value.integer().value_or(0);
    if (number >= lowest && number <= highest) return number;
    throw Unusable(std::string(what) + " must be from " + std::to_string(lowest) + " to " + std::to_string(highest));
}

}  // namespace orbinel::tool
