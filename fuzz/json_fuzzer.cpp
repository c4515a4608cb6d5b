#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "hosts/common/rapidjson_json.hpp"

namespace {

using orbinel::Value;
using orbinel::platform::JsonStyle;

void require(bool condition) {
    if (!condition) std::abort();
}

}  // namespace

// What can be read can be written in every style, and reads back equal.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const orbinel::hosts::RapidJson json;
    const auto outcome = json.parse(std::string_view(reinterpret_cast<const char*>(data), size));
    const auto* value = std::get_if<Value>(&outcome);
    if (value == nullptr) return 0;
    require(isWithinDepth(*value));
    for (const auto style : {JsonStyle::compact, JsonStyle::compactSorted, JsonStyle::pretty}) {
        const auto text = json.serialise(*value, style);
        require(text.has_value());
        const auto again = json.parse(*text);
        const auto* same = std::get_if<Value>(&again);
        require(same != nullptr && *same == *value);
        require(json.serialise(*same, style) == text);
    }
    return 0;
}
