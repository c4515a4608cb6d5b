#pragma once

#include "orbinel/value.hpp"

/// What callers ask of a value that may be missing, in the words of the library.
namespace orbinel {

/// Neither absent nor the null marker.
[[nodiscard]] inline bool isPresent(const Value& value) noexcept { return !value.isAbsent() && !value.isNull(); }

/// Present, and no empty text or container.
[[nodiscard]] inline bool hasContent(const Value& value) noexcept {
    if (const auto* text = value.ifString()) return !text->empty();
    if (const auto* array = value.ifArray()) return !array->empty();
    if (const auto* dictionary = value.ifDictionary()) return !dictionary->empty();
    return isPresent(value);
}

/// The dictionary where the value is one, else an empty one.
[[nodiscard]] inline const Dictionary& dictionaryOrEmpty(const Value& value) {
    static const auto& empty = *new Dictionary;  // never destroyed
    const auto* dictionary = value.ifDictionary();
    return dictionary != nullptr ? *dictionary : empty;
}

}  // namespace orbinel
