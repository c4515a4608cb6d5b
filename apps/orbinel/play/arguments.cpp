#include "apps/orbinel/play/arguments.hpp"

#include <charconv>
#include <limits>
#include <utility>

#include "apps/orbinel/play/fields.hpp"

namespace orbinel::tool {

namespace {

constexpr std::size_t mostRepeatedBytes = 64 * 1024 * 1024;
constexpr double farthestMoment = 253'402'300'799;  // the last second of the year 9999, either way from 1970

Value narrowed(std::int64_t number) {
    return std::in_range<std::int32_t>(number) ? Value(static_cast<std::int32_t>(number)) : Value(number);
}

Value doubleOf(const Value& content) {
    if (const auto number = content.number()) return *number;
    const auto& text = content.stringOrEmpty();
    if (text == "nan") return std::numeric_limits<double>::quiet_NaN();
    if (text == "inf") return std::numeric_limits<double>::infinity();
    if (text == "-inf") return -std::numeric_limits<double>::infinity();
    throw Unusable("$double takes a number, \"nan\", \"inf\" or \"-inf\"");
}

/// A text of exactly these bytes, which need not be UTF-8.
Value bytesOf(const Value& content) {
    const auto& hex = requireText(content, "the content of $bytes");
    std::string bytes(hex.size() / 2, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        unsigned char byte = 0;
        const char* pair = hex.data() + 2 * i;
        const auto read = std::from_chars(pair, pair + 2, byte, 16);
        if (read.ec != std::errc() || read.ptr != pair + 2) throw Unusable("$bytes takes hexadecimal digits");
        bytes[i] = static_cast<char>(byte);
    }
    if (hex.size() % 2 != 0) throw Unusable("$bytes takes two hexadecimal digits a byte");
    return bytes;
}

/// The only key of a special object; nothing for any other value.
const Dictionary::Entry* onlySpecialEntry(const Value& json) {
    const auto* dictionary = json.ifDictionary();
    if (dictionary == nullptr || dictionary->size() != 1 || !dictionary->begin()->first.starts_with('$'))
        return nullptr;
    return dictionary->begin();
}

}  // namespace

Argument ArgumentReader::argument(const Value& json) {
    if (const auto* entry = onlySpecialEntry(json)) {
        if (entry->first == "$ref") return Reference{requireText(entry->second, "the content of $ref")};
        if (entry->first == "$callback") return CallbackName{requireText(entry->second, "the content of $callback")};
    }
    return value(json);
}

References ArgumentReader::references(const Value& json, std::string_view what) {
    const auto refuse = [&] { throw Unusable(std::string(what) + " must be a list of {\"$ref\"} or null"); };
    const auto* elements = json.ifArray();
    if (elements == nullptr) refuse();
    References references;
    for (const auto& element : *elements) {
        const auto* entry = onlySpecialEntry(element);
        if (element.isNull()) {
            references.emplace_back();
        } else if (entry != nullptr && entry->first == "$ref") {
            references.push_back(Reference{requireText(entry->second, "the content of $ref")});
        } else {
            refuse();
        }
    }
    return references;
}

Value ArgumentReader::value(const Value& json) { return json.isNull() ? Value() : element(json); }

Value ArgumentReader::element(const Value& json) {
    if (const auto* entry = onlySpecialEntry(json)) return special(entry->first, entry->second);
    if (const auto* number = json.ifInt64()) return narrowed(*number);
    if (const auto* array = json.ifArray()) {
        Array elements;
        elements.reserve(array->size());
        for (const auto& one : *array) elements.push_back(element(one));
        return elements;
    }
    if (const auto* dictionary = json.ifDictionary()) {
        Dictionary elements;
        elements.reserve(dictionary->size());
        for (const auto& [key, one] : *dictionary) elements.set(key, element(one));
        return elements;
    }
    return json;
}

Value ArgumentReader::special(const std::string& key, const Value& content) {
    constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
    constexpr auto highest = std::numeric_limits<std::int64_t>::max();
    if (key == "$int64") return requireWholeNumber(content, "the content of $int64", lowest, highest);
    if (key == "$double") return doubleOf(content);
    if (key == "$date") return Date{requireNumber(content, "the content of $date", -farthestMoment, farthestMoment)};
    if (key == "$bytes") return bytesOf(content);
    if (key == "$repeat") return repeated(content);
    if (key == "$ref" || key == "$callback") throw Unusable(key + " can only be an argument by itself");
    throw Unusable("there is no special object " + inQuotes(key));
}

Value ArgumentReader::repeated(const Value& content) {
    const auto* parts = content.ifArray();
    if (parts == nullptr || parts->size() != 2) throw Unusable("$repeat takes [TEXT, n]");
    const auto& text = requireText((*parts)[0], "the text of $repeat");
    const auto times =
        requireWholeNumber((*parts)[1], "the count of $repeat", 0, static_cast<std::int64_t>(mostRepeatedBytes));
    const auto count = static_cast<std::size_t>(times);
    if (!text.empty() && count > (mostRepeatedBytes - repeatedBytes_) / text.size()) {
        throw Unusable("$repeat makes more than 64 MiB of text");
    }
    repeatedBytes_ += text.size() * count;
    std::string result;
    result.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) result += text;
    return result;
}

}  // namespace orbinel::tool
