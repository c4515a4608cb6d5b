#include "inapp/script_call.hpp"

#include <array>
#include <utility>

namespace orbinel {

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 3> escapes{
    {{"<", "\\u003c"}, {"\u2028", "\\u2028"}, {"\u2029", "\\u2029"}}};
constexpr std::string_view beginnings = "<\xE2";  // the first bytes of what is escaped

void appendEscaped(std::string& script, std::string_view json) {
    for (;;) {
        const auto next = json.find_first_of(beginnings);
        script += json.substr(0, next);
        if (next == std::string_view::npos) return;
        json.remove_prefix(next);
        std::size_t taken = 1;
        std::string_view written = json.substr(0, taken);
        for (const auto& [character, escape] : escapes) {
            if (!json.starts_with(character)) continue;
            taken = character.size();
            written = escape;
        }
        script += written;
        json.remove_prefix(taken);
    }
}

}  // namespace

std::string sdkCallbackMethod(std::int32_t messageType, std::string_view json) {
    std::string script = "sdkCallbackMethod(" + std::to_string(messageType) + ", ";
    script.reserve(script.size() + json.size() + 1);
    appendEscaped(script, json);
    return script += ")";
}

}  // namespace orbinel
