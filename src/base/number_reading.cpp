#include "base/number_reading.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>

namespace orbinel {

namespace {

std::string_view withoutLeading(std::string_view text, std::string_view characters) noexcept {
    text.remove_prefix(std::min(text.find_first_not_of(characters), text.size()));
    return text;
}

std::string_view withoutLeadingSpace(std::string_view text) noexcept { return withoutLeading(text, " \t\n\v\f\r"); }

/// The text from its number on, as `from_chars` takes it: without white space and a plus.
std::string_view fromItsNumber(std::string_view text) noexcept {
    text = withoutLeadingSpace(text);
    if (!text.starts_with('+')) return text;
    text.remove_prefix(1);
    return text.starts_with('-') ? std::string_view() : text;
}

double leadingNumber(std::string_view text) noexcept {
    text = fromItsNumber(text);
    double number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return std::isfinite(number) ? number : 0;  // "inf" and "nan" are no numbers
}

std::int32_t leadingInteger(std::string_view text) noexcept {
    using Limits = std::numeric_limits<std::int32_t>;
    text = fromItsNumber(text);
    std::int32_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc::result_out_of_range) return number;
    return text.front() == '-' ? Limits::min() : Limits::max();
}

bool leadingTruth(std::string_view text) noexcept {
    text = withoutLeadingSpace(text);
    if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
    text = withoutLeading(text, "0");
    return !text.empty() && std::string_view("YyTt123456789").find(text.front()) != std::string_view::npos;
}

}  // namespace

std::optional<double> doubleValue(const Value& value) noexcept {
    if (const auto* text = value.ifString()) return leadingNumber(*text);
    if (const auto* boolean = value.ifBoolean()) return *boolean ? 1 : 0;
    return value.number();
}

std::optional<std::int32_t> intValue(const Value& value) noexcept {
    if (const auto* text = value.ifString()) return leadingInteger(*text);
    const auto number = doubleValue(value);
    return number ? std::optional(held<std::int32_t>(*number)) : std::nullopt;
}

std::optional<bool> boolValue(const Value& value) noexcept {
    if (const auto* text = value.ifString()) return leadingTruth(*text);
    const auto number = doubleValue(value);
    return number ? std::optional(*number != 0 && !std::isnan(*number)) : std::nullopt;
}

}  // namespace orbinel
