#include "apps/orbinel/play/arguments.hpp"

#include <cstdint>
#include <utility>

#include "apps/orbinel/play/fields.hpp"
#include "base/special_objects.hpp"

namespace orbinel::tool {

namespace {

constexpr std::size_t mostRepeatedBytes = 64 * 1024 * 1024;

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
    try {
        if (auto value = specialValue(key, content)) return std::move(*value);
    } catch (const WrongSpecialObject& wrong) {
        throw Unusable(wrong.what());
    }
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
