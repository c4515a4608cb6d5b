#include "apps/orbinel/play/traceable.hpp"

#include <cmath>

namespace orbinel::tool {

namespace {

Value traceableNumber(double number) {
    if (std::isnan(number)) return Dictionary{{"$double", "nan"}};
    if (std::isinf(number)) return Dictionary{{"$double", number > 0 ? "inf" : "-inf"}};
    return number;
}

}  // namespace

Value traceable(const Value& value, int depth) {
    if (value.isAbsent()) return Null{};
    if (const auto* number = value.ifReal()) return traceableNumber(*number);
    if (const auto* date = value.ifDate()) return Dictionary{{"$date", date->secondsSince1970}};
    const auto* array = value.ifArray();
    const auto* dictionary = value.ifDictionary();
    if (array == nullptr && dictionary == nullptr) return value;
    if (depth <= 0) return "(nested too deeply)";
    if (array != nullptr) {
        Array elements;
        for (const auto& element : *array) elements.push_back(traceable(element, depth - 1));
        return elements;
    }
    Dictionary entries;
    entries.reserve(dictionary->size());
    for (const auto& [key, entry] : *dictionary) entries.set(key, traceable(entry, depth - 1));
    return entries;
}

}  // namespace orbinel::tool
