#pragma once

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <variant>

#include "hosts/common/rapidjson_json.hpp"
#include "orbinel/platform/console.hpp"

namespace orbinel::fuzz {

class NoConsole final : public platform::Console {
public:
    void writeLine(std::string_view) noexcept override {}
};

inline void require(bool condition) {
    if (!condition) std::abort();
}

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// The input as JSON, where it is any.
inline std::optional<Value> valueOf(std::string_view text) {
    auto outcome = hosts::RapidJson().parse(text);
    auto* value = std::get_if<Value>(&outcome);
    return value != nullptr ? std::optional(std::move(*value)) : std::nullopt;
}

/// The input as JSON, where it is a dictionary.
inline std::optional<Dictionary> dictionaryOf(std::string_view text) {
    auto value = valueOf(text);
    auto* dictionary = value ? value->ifDictionary() : nullptr;
    return dictionary != nullptr ? std::optional(std::move(*dictionary)) : std::nullopt;
}

}  // namespace orbinel::fuzz
