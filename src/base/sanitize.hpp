#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "orbinel/value.hpp"

/// What JSON cannot hold: NaN and infinities, dates, absent values, and containers beyond `maximumValueDepth`. In a
/// header, because hosts, which are libraries of their own, keep what they store to the same rule.
namespace orbinel {

/// Whether JSON can hold the value where so many levels of containers are left, looking at containers from outside
/// only.
[[nodiscard]] inline bool canStandInJson(const Value& value, int depth) noexcept {
    using Kind = Value::Kind;
    switch (value.kind()) {
        case Kind::absent:
        case Kind::date:
            return false;
        case Kind::real:
            return std::isfinite(*value.ifReal());
        case Kind::array:
        case Kind::dictionary:
            return depth > 0;
        default:
            return true;
    }
}

/// Removes it from the inside of the value, which itself stays whatever it is.
inline void sanitizeValue(Value& value, int depth = maximumValueDepth);

/// Removes it, however deep it stands. Where the dictionary will stand inside others, the caller gives the depth that
/// is left for it.
inline void sanitizeDictionary(Dictionary& dictionary, int depth = maximumValueDepth) {
    dictionary.eraseIf([&](const Dictionary::Entry& entry) { return !canStandInJson(entry.second, depth - 1); });
    dictionary.forEachValue([&](const std::string&, Value& value) { sanitizeValue(value, depth - 1); });
}

inline void sanitizeValue(Value& value, int depth) {
    if (auto* dictionary = value.ifDictionary()) sanitizeDictionary(*dictionary, depth);
    auto* array = value.ifArray();
    if (array == nullptr) return;
    std::erase_if(*array, [&](const Value& element) { return !canStandInJson(element, depth - 1); });
    for (auto& element : *array) sanitizeValue(element, depth - 1);
}

}  // namespace orbinel
