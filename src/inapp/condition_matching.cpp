#include "inapp/condition_matching.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <optional>
#include <string_view>

#include "base/value_content.hpp"
#include "events/data_types.hpp"
#include "inapp/lower_case.hpp"

namespace orbinel {

namespace {

constexpr std::string_view OP_EQUAL = "eq";
constexpr std::string_view OP_NOT_EQUAL = "ne";
constexpr std::string_view OP_CONTAINS = "cnt";
constexpr std::string_view OP_DOES_NOT_CONTAIN = "dnc";
constexpr std::string_view OP_GREATER_EQUAL = "gte";
constexpr std::string_view OP_LESS_EQUAL = "lte";
constexpr std::string_view OP_GREATER_THAN = "gt";
constexpr std::string_view OP_LESS_THAN = "lt";

bool isNumeric(std::string_view type) { return type == kDataTypeIntKey || type == kDataTypeDoubleKey; }

bool isComparable(const Value& actual) {
    const auto type = getDataTypeOfObject(actual);
    return type == kDataTypeStringKey || type == kDataTypeBooleanKey || isNumeric(type);
}

Value booleanAsNumber(const Value& value) {
    const auto* boolean = value.ifBoolean();
    return boolean != nullptr ? Value(*boolean ? 1 : 0) : value;
}

bool areEqual(const Value& actual, const Value& value) { return booleanAsNumber(actual) == booleanAsNumber(value); }

bool contains(const Value& actual, const Value& value) {
    return lowerCased(actual.stringOrEmpty()).find(lowerCased(value.stringOrEmpty())) != std::string::npos;
}

/// What a condition compares a number with: a number, a boolean as 1 or 0, or a text that is a number.
std::optional<double> numberOf(const Value& value) {
    const auto* text = value.ifString();
    if (text == nullptr) return booleanAsNumber(value).number();
    double number = 0;
    const auto* const end = text->data() + text->size();
    const auto read = std::from_chars(text->data(), end, number);
    return read.ec == std::errc{} && read.ptr == end ? std::optional(number) : std::nullopt;
}

template <typename Compare>
bool compareNumbers(const Value& actual, const Value& value, Compare compare) {
    if (!isNumeric(getDataTypeOfObject(actual))) return false;
    const auto other = numberOf(value);
    return other && compare(*actual.number(), *other);
}

bool areTexts(const Value& actual, const Value& value) {
    return actual.ifString() != nullptr && value.ifString() != nullptr;
}

using Operator = bool (*)(const Value& actual, const Value& value);

struct NamedOperator {
    std::string_view name;
    Operator passes;
};

constexpr std::array<NamedOperator, 8> operators{{
    {OP_EQUAL, [](const Value& a, const Value& v) { return isComparable(a) && areEqual(a, v); }},
    {OP_NOT_EQUAL, [](const Value& a, const Value& v) { return isComparable(a) && !areEqual(a, v); }},
    {OP_CONTAINS, [](const Value& a, const Value& v) { return areTexts(a, v) && contains(a, v); }},
    {OP_DOES_NOT_CONTAIN, [](const Value& a, const Value& v) { return areTexts(a, v) && !contains(a, v); }},
    {OP_GREATER_EQUAL, [](const Value& a, const Value& v) { return compareNumbers(a, v, std::greater<>()); }},
    {OP_LESS_EQUAL, [](const Value& a, const Value& v) { return compareNumbers(a, v, std::less<>()); }},
    {OP_GREATER_THAN, [](const Value& a, const Value& v) { return compareNumbers(a, v, std::greater_equal<>()); }},
    {OP_LESS_THAN, [](const Value& a, const Value& v) { return compareNumbers(a, v, std::less_equal<>()); }},
}};

bool isMet(const Dictionary& parameters, const Dictionary& condition) {
    const auto* key = condition["key"].ifString();
    const auto* actual = key != nullptr ? parameters.find(*key) : nullptr;
    if (actual == nullptr || actual->isAbsent()) return false;
    const auto& name = condition["op"].stringOrEmpty();
    const auto* known =
        std::find_if(operators.begin(), operators.end(), [&](const NamedOperator& one) { return one.name == name; });
    return known == operators.end() || known->passes(*actual, condition["value"]);
}

}  // namespace

bool checkIfParamsAreMatching(const Dictionary& parameters, const Value& expected) {
    if (!isPresent(expected)) return true;
    if (const auto* none = expected.ifDictionary()) return none->empty();
    const auto* conditions = expected.ifArray();
    return conditions != nullptr && std::all_of(conditions->begin(), conditions->end(), [&](const Value& element) {
               const auto* condition = element.ifDictionary();
               return condition != nullptr && isMet(parameters, *condition);
           });
}

}  // namespace orbinel
