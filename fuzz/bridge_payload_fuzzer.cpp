#include "base/number_reading.hpp"
#include "fuzz/input.hpp"
#include "inapp/script_call.hpp"
#include "inapp/template_payload.hpp"
#include "inapp/template_values.hpp"

// Whatever URL a page navigates to, its payload is decoded within bounds, and said back to the page it cannot break out
// of the call and is the same value.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orbinel;
    using namespace orbinel::fuzz;
    const auto payload = template_payload::decode(fuzz::textOf(data, size));
    if (!payload) return 0;
    require(payload->size() <= template_payload::longestText && payload->size() <= size);

    const auto value = valueOf(*payload);
    if (!value) return 0;
    (void)intValue(*value);
    (void)boolValue(*value);
    if (const auto descriptor = template_values::descriptorOf(*value)) {
        (void)template_values::textOf(descriptor->value, hosts::RapidJson());
    }

    constexpr std::string_view head = "sdkCallbackMethod(1, ";
    const auto script = sdkCallbackMethod(1, *payload);
    require(script.starts_with(head));
    for (const auto* unsafe : {"<", "\u2028", "\u2029"}) require(script.find(unsafe) == std::string::npos);
    require(valueOf(std::string_view(script).substr(head.size(), script.size() - head.size() - 1)) == value);
    return 0;
}
