#include "base/json_rules.hpp"

#include <algorithm>

#include "base/sanitize.hpp"

namespace orbinel {

namespace {

bool isValid(const Dictionary& dictionary, int depth) noexcept;

bool isValid(const Value& value, int depth) noexcept {
    if (!canStandInJson(value, depth)) return false;
    if (const auto* dictionary = value.ifDictionary()) return isValid(*dictionary, depth);
    const auto* array = value.ifArray();
    return array == nullptr ||
           std::all_of(array->begin(), array->end(), [&](const Value& element) { return isValid(element, depth - 1); });
}

bool isValid(const Dictionary& dictionary, int depth) noexcept {
    return depth > 0 && std::all_of(dictionary.begin(), dictionary.end(),
                                    [&](const Dictionary::Entry& entry) { return isValid(entry.second, depth - 1); });
}

}  // namespace

bool isValidJsonDeeply(const Dictionary& dictionary) noexcept { return isValid(dictionary, maximumValueDepth); }

bool isValidJsonDeeply(const Value& value) noexcept {
    return (value.ifArray() != nullptr || value.ifDictionary() != nullptr) && isValid(value, maximumValueDepth);
}

}  // namespace orbinel
