#include "fuzz/input.hpp"

// What can be read can be written in every style, and reads back equal.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orbinel::fuzz;
    using orbinel::platform::JsonStyle;
    const auto value = valueOf(textOf(data, size));
    if (!value) return 0;
    const orbinel::hosts::RapidJson json;
    require(isWithinDepth(*value));
    for (const auto style : {JsonStyle::compact, JsonStyle::compactSorted, JsonStyle::pretty}) {
        const auto text = json.serialise(*value, style);
        require(text.has_value());
        const auto same = valueOf(*text);
        require(same == value);
        require(json.serialise(*same, style) == text);
    }
    return 0;
}
