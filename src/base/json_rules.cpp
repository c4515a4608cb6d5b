#include "base/json_rules.hpp"

#include <algorithm>
#include <cmath>

namespace orbinel {

namespace {

bool isValid(const Dictionary& dictionary, int depth) noexcept;

bool isValid(const Value& value, int depth) noexcept {
    using Kind = Value::Kind;
    switch (value.kind()) {
        case Kind::absent:
        case Kind::date:
            return false;
        case Kind::real:
            return std::isfinite(*value.ifReal());
        case Kind::dictionary:
            return isValid(*value.ifDictionary(), depth);
        case Kind::array: {
            const auto& array = *value.ifArray();
            return depth > 0 &&
                   std::all_of(array.begin(), array.end(), [&](const Value& v) { return isValid(v, depth - 1); });
        }
        default:
            return true;
    }
}

bool isValid(const Dictionary& dictionary, int depth) noexcept {
    return depth > 0 && std::all_of(dictionary.begin(), dictionary.end(),
                                    [&](const Dictionary::Entry& entry) { return isValid(entry.second, depth - 1); });
}

void clean(Dictionary& dictionary, int depth);
void clean(Array& array, int depth);

/// Whether the value may stay, looking at containers from outside only.
bool mayStay(const Value& value, int depth) {
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

void cleanInside(Value& value, int depth) {
    if (auto* array = value.ifArray()) clean(*array, depth);
    if (auto* dictionary = value.ifDictionary()) clean(*dictionary, depth);
}

void clean(Dictionary& dictionary, int depth) {
    dictionary.eraseIf([&](const Dictionary::Entry& entry) { return !mayStay(entry.second, depth - 1); });
    dictionary.forEachValue([&](const std::string&, Value& value) { cleanInside(value, depth - 1); });
}

void clean(Array& array, int depth) {
    std::erase_if(array, [&](const Value& value) { return !mayStay(value, depth - 1); });
    for (auto& value : array) cleanInside(value, depth - 1);
}

}  // namespace

bool isValidJsonDeeply(const Dictionary& dictionary) noexcept { return isValid(dictionary, maximumValueDepth); }

bool isValidJsonDeeply(const Value& value) noexcept {
    return (value.ifArray() != nullptr || value.ifDictionary() != nullptr) && isValid(value, maximumValueDepth);
}

void sanitizeDictionary(Dictionary& dictionary, int depth) { clean(dictionary, depth); }
void sanitizeArray(Array& array) { clean(array, maximumValueDepth); }

}  // namespace orbinel
