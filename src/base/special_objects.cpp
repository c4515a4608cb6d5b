#include "base/special_objects.hpp"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

namespace orbinel {

namespace {

constexpr double farthestMoment = 253'402'300'799;  // the last second of the year 9999, either way from 1970

std::int64_t int64Of(const Value& content) {
    if (const auto* number = content.ifInt32()) return *number;
    if (const auto* number = content.ifInt64()) return *number;
    throw WrongSpecialObject("$int64 takes a whole number of 64 bits");
}

double doubleOf(const Value& content) {
    if (const auto number = content.number()) return *number;
    const auto& text = content.stringOrEmpty();
    if (text == "nan") return std::numeric_limits<double>::quiet_NaN();
    if (text == "inf") return std::numeric_limits<double>::infinity();
    if (text == "-inf") return -std::numeric_limits<double>::infinity();
    throw WrongSpecialObject("$double takes a number, \"nan\", \"inf\" or \"-inf\"");
}

Date dateOf(const Value& content) {
    const auto seconds = content.number();
    if (seconds && std::abs(*seconds) <= farthestMoment) return Date{*seconds};
    throw WrongSpecialObject("$date takes the seconds since 1970, up to the year 9999");
}

std::string bytesOf(const Value& content) {
    const auto* hex = content.ifString();
    if (hex == nullptr || hex->size() % 2 != 0) throw WrongSpecialObject("$bytes takes two hexadecimal digits a byte");
    std::string bytes(hex->size() / 2, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        unsigned char byte = 0;
        const char* pair = hex->data() + 2 * i;
        const auto read = std::from_chars(pair, pair + 2, byte, 16);
        if (read.ec != std::errc() || read.ptr != pair + 2) throw WrongSpecialObject("$bytes takes hexadecimal digits");
        bytes[i] = static_cast<char>(byte);
    }
    return bytes;
}

Value withSpecialNumber(double number) {
    if (std::isnan(number)) return Dictionary{{"$double", "nan"}};
    if (std::isinf(number)) return Dictionary{{"$double", number > 0 ? "inf" : "-inf"}};
    return number;
}

}  // namespace

const Dictionary::Entry* onlySpecialEntry(const Value& json) noexcept {
    const auto* dictionary = json.ifDictionary();
    if (dictionary == nullptr || dictionary->size() != 1 || !dictionary->begin()->first.starts_with('$'))
        return nullptr;
    return dictionary->begin();
}

std::optional<Value> specialValue(std::string_view key, const Value& content) {
    if (key == "$int64") return int64Of(content);
    if (key == "$double") return doubleOf(content);
    if (key == "$date") return dateOf(content);
    if (key == "$bytes") return bytesOf(content);
    return std::nullopt;
}

Value narrowed(std::int64_t number) noexcept {
    return std::in_range<std::int32_t>(number) ? Value(static_cast<std::int32_t>(number)) : Value(number);
}

Value withSpecialObjects(const Value& value, int depth) {
    if (value.isAbsent()) return Null{};
    if (const auto* number = value.ifReal()) return withSpecialNumber(*number);
    if (const auto* date = value.ifDate()) return Dictionary{{"$date", date->secondsSince1970}};
    const auto* array = value.ifArray();
    const auto* dictionary = value.ifDictionary();
    if (array == nullptr && dictionary == nullptr) return value;
    if (depth <= 0) return "(nested too deeply)";
    if (array != nullptr) {
        Array elements;
        elements.reserve(array->size());
        for (const auto& element : *array) elements.push_back(withSpecialObjects(element, depth - 1));
        return elements;
    }
    Dictionary entries;
    entries.reserve(dictionary->size());
    for (const auto& [key, entry] : *dictionary) entries.set(key, withSpecialObjects(entry, depth - 1));
    return entries;
}

}  // namespace orbinel
