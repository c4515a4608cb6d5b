#include "tools/console_line.hpp"

#include <algorithm>

#include "base/sanitize.hpp"

namespace orbinel {

std::string onOneLine(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    constexpr std::string_view breaks = "\r\n";
    std::string line;
    line.reserve(text.size());
    while (!text.empty()) {
        const auto lineEnd = text.find_first_of(breaks);
        auto piece = text.substr(0, lineEnd);
        text = lineEnd == std::string_view::npos ? std::string_view() : text.substr(lineEnd);
        if (!text.empty()) piece = piece.substr(0, piece.find_last_not_of(blanks) + 1);
        line += piece;
        if (text.empty()) break;
        line += ' ';
        text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    }
    return line;
}

std::string jsonOnOneLine(const platform::Json& json, Dictionary dictionary) {
    sanitizeDictionary(dictionary);
    return json.serialise(dictionary, platform::JsonStyle::compact).value_or("{}");
}

}  // namespace orbinel
