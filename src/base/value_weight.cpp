#include "base/value_weight.hpp"

namespace orbinel {

namespace {

constexpr std::size_t ofOne = 16;

}  // namespace

std::size_t weightOf(const Value& value) noexcept {
    if (const auto* text = value.ifString()) return ofOne + text->size();
    if (const auto* dictionary = value.ifDictionary()) return weightOf(*dictionary);
    std::size_t weight = ofOne;
    if (const auto* array = value.ifArray()) {
        for (const auto& element : *array) weight += weightOf(element);
    }
    return weight;
}

std::size_t weightOf(const Dictionary& dictionary) noexcept {
    std::size_t weight = ofOne;
    for (const auto& [key, entry] : dictionary) weight += key.size() + weightOf(entry);
    return weight;
}

}  // namespace orbinel
