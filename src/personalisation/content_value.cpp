#include "personalisation/content_value.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>
#include <system_error>
#include <utility>

namespace orbinel::content_value {

namespace {

constexpr std::int64_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();

std::string_view withoutLeading(std::string_view text, std::string_view characters) {
    text.remove_prefix(std::min(text.find_first_not_of(characters), text.size()));
    return text;
}

std::string_view withoutLeadingSpace(std::string_view text) { return withoutLeading(text, " \t\n\v\f\r"); }

bool beginsWithSign(std::string_view text) { return text.starts_with('-') || text.starts_with('+'); }

std::int32_t leadingInteger(std::string_view text) noexcept {
    text = withoutLeadingSpace(text);
    if (text.starts_with('+')) text = text.substr(1).starts_with('-') ? std::string_view() : text.substr(1);
    std::int32_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc::result_out_of_range) return number;
    return static_cast<std::int32_t>(text.front() == '-' ? lowest : highest);
}

bool leadingTruth(std::string_view text) noexcept {
    text = withoutLeadingSpace(text);
    if (beginsWithSign(text)) text.remove_prefix(1);
    text = withoutLeading(text, "0");
    return !text.empty() && std::string_view("YyTt123456789").find(text.front()) != std::string_view::npos;
}

}  // namespace

std::optional<std::string> textValue(const Value& value, const platform::Json& json) {
    if (const auto* text = value.ifString()) return *text;
    if (value.isAbsent() || value.isNull() || value.ifDate() != nullptr) return std::nullopt;
    return json.serialise(value, platform::JsonStyle::compact);
}

std::optional<std::int32_t> intValue(const Value& value) noexcept {
    if (const auto* text = value.ifString()) return leadingInteger(*text);
    if (const auto* boolean = value.ifBoolean()) return *boolean ? 1 : 0;
    if (!value.isNumber()) return std::nullopt;
    return static_cast<std::int32_t>(std::clamp(value.integer().value_or(0), lowest, highest));
}

std::optional<bool> boolValue(const Value& value) noexcept {
    if (const auto* text = value.ifString()) return leadingTruth(*text);
    if (const auto* boolean = value.ifBoolean()) return *boolean;
    const auto number = value.number();
    if (!number) return std::nullopt;
    return *number != 0 && !std::isnan(*number);
}

}  // namespace orbinel::content_value
