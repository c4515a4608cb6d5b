#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orbinel {

/// A text argument that may be absent. Takes every kind of text, and a null pointer or `std::nullopt` for none; it
/// refers to the caller's text and is only for passing on. Text is UTF-8.
class OptionalText {
public:
    OptionalText(std::nullopt_t) noexcept {}
    OptionalText(std::nullptr_t) noexcept {}
    OptionalText(const char* text) noexcept : present_(text != nullptr), text_(text != nullptr ? text : "") {}
    OptionalText(std::string_view text) noexcept : present_(true), text_(text) {}
    OptionalText(const std::string& text) noexcept : present_(true), text_(text) {}
    OptionalText(const std::optional<std::string>& text) noexcept
        : present_(text.has_value()), text_(text ? std::string_view(*text) : std::string_view()) {}

    [[nodiscard]] bool isPresent() const noexcept { return present_; }

    /// The text; empty where there is none.
    [[nodiscard]] std::string_view view() const noexcept { return text_; }

    [[nodiscard]] std::optional<std::string> copy() const {
        return present_ ? std::optional(std::string(text_)) : std::nullopt;
    }

private:
    bool present_ = false;
    std::string_view text_;
};

}  // namespace orbinel
