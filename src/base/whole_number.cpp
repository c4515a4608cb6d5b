#include "base/whole_number.hpp"

#include <algorithm>
#include <charconv>
#include <limits>

namespace orbinel {

std::optional<std::int64_t> wholeNumberOf(const Value& value) noexcept {
    if (const auto* boolean = value.ifBoolean()) return *boolean ? 1 : 0;
    const auto* text = value.ifString();
    if (text == nullptr) return value.integer();
    std::int64_t number = 0;
    const auto* const end = text->data() + text->size();
    const auto read = std::from_chars(text->data(), end, number);
    return read.ec == std::errc{} && read.ptr == end ? std::optional(number) : std::nullopt;
}

std::int32_t int32Of(const Value& value) noexcept {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(wholeNumberOf(value).value_or(0), Limits::min(), Limits::max()));
}

}  // namespace orbinel
