#include "base/whole_number.hpp"

#include <charconv>

#include "base/number_reading.hpp"

namespace orbinel {

namespace {

enum class Text { asAWhole, itsBeginning };

std::optional<std::int64_t> numberOf(const Value& value, Text read) noexcept {
    if (const auto* boolean = value.ifBoolean()) return *boolean ? 1 : 0;
    const auto* text = value.ifString();
    if (text == nullptr) return value.integer();
    std::int64_t number = 0;
    const auto* const end = text->data() + text->size();
    const auto found = std::from_chars(text->data(), end, number);
    const bool counts = found.ec == std::errc{} && (found.ptr == end || read == Text::itsBeginning);
    return counts ? std::optional(number) : std::nullopt;
}

}  // namespace

std::optional<std::int64_t> wholeNumberOf(const Value& value) noexcept { return numberOf(value, Text::asAWhole); }

std::optional<std::int64_t> leadingWholeNumberOf(const Value& value) noexcept {
    return numberOf(value, Text::itsBeginning);
}

std::int32_t int32Of(const Value& value) noexcept { return held<std::int32_t>(wholeNumberOf(value).value_or(0)); }

}  // namespace orbinel
