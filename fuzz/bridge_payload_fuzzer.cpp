#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <variant>

#include "base/number_reading.hpp"
#include "hosts/common/rapidjson_json.hpp"
#include "inapp/script_call.hpp"
#include "inapp/template_payload.hpp"
#include "inapp/template_values.hpp"
#include "orbinel/value.hpp"

// Whatever URL a page navigates to, its payload is decoded within bounds, and said back to the page it cannot break out
// of the call and is the same value.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orbinel;
    const std::string_view url(reinterpret_cast<const char*>(data), size);
    const auto payload = template_payload::decode(url);
    if (!payload) return 0;
    if (payload->size() > template_payload::longestText || payload->size() > size) std::abort();

    const hosts::RapidJson json;
    const auto parsed = json.parse(*payload);
    const auto* value = std::get_if<Value>(&parsed);
    if (value == nullptr) return 0;
    (void)intValue(*value);
    (void)boolValue(*value);
    if (const auto descriptor = template_values::descriptorOf(*value)) {
        (void)template_values::textOf(descriptor->value, json);
    }

    constexpr std::string_view head = "sdkCallbackMethod(1, ";
    const auto script = sdkCallbackMethod(1, *payload);
    if (!script.starts_with(head) || script.find('<') != std::string::npos) std::abort();
    if (script.find("\u2028") != std::string::npos || script.find("\u2029") != std::string::npos) std::abort();
    const auto again = json.parse(std::string_view(script).substr(head.size(), script.size() - head.size() - 1));
    const auto* same = std::get_if<Value>(&again);
    if (same == nullptr || !(*same == *value)) std::abort();
    return 0;
}
