#include "user/contact_rules.hpp"

#include <algorithm>

#include "base/ascii.hpp"

namespace orbinel {

namespace {

/// Line feed to carriage return, and in UTF-8 U+0085, U+2028 and U+2029.
bool hasLineBreak(std::string_view text) noexcept {
    return text.find_first_of("\n\v\f\r") != std::string_view::npos ||
           text.find("\xC2\x85") != std::string_view::npos || text.find("\xE2\x80\xA8") != std::string_view::npos ||
           text.find("\xE2\x80\xA9") != std::string_view::npos;
}

}  // namespace

// The first "@" that has something before it and the last dot that has something after it leave the most room between
// them: where they do not fit, no others do.
bool isEmailValid(std::string_view text) noexcept {
    if (text.size() < 5 || hasLineBreak(text)) return false;
    const auto at = text.find('@', 1);
    const auto dot = text.rfind('.', text.size() - 2);
    return at != std::string_view::npos && dot != std::string_view::npos && dot >= at + 2;
}

bool isPhoneNumberValid(std::string_view text) noexcept {
    if (text.size() < 3 || text.size() > 16 || text[0] != '+' || text[1] == '0') return false;
    return std::all_of(text.begin() + 1, text.end(), ascii::isDigit);
}

}  // namespace orbinel
