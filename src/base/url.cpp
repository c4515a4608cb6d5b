#include "base/url.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "base/ascii.hpp"

namespace orbinel {

namespace {

constexpr std::string_view reserved = ":/?#[]@!$&'()*+,;=";
constexpr std::string_view unreservedMarks = "-._~";
constexpr std::string_view beforeAuthority = "://";
constexpr std::string_view afterAuthority = "/?#";

constexpr bool isLegal(char c) noexcept {
    return ascii::isLetterOrDigit(c) || c == '%' || reserved.find(c) != std::string_view::npos ||
           unreservedMarks.find(c) != std::string_view::npos;
}

constexpr bool isOfScheme(char c) noexcept { return ascii::isLetterOrDigit(c) || c == '+' || c == '-' || c == '.'; }

/// What follows the scheme of a web page, or nothing.
std::optional<std::string_view> afterWebScheme(std::string_view url) noexcept {
    for (const std::string_view scheme : {"http://", "https://"}) {
        if (ascii::beginsWith(url, scheme)) return url.substr(scheme.size());
    }
    return std::nullopt;
}

}  // namespace

std::string schemeOf(std::string_view url) {
    const auto end = url.find(':');
    if (end == std::string_view::npos) return {};
    const auto scheme = url.substr(0, end);
    const bool legal =
        !scheme.empty() && ascii::isLetter(scheme.front()) && std::all_of(scheme.begin(), scheme.end(), isOfScheme);
    return legal ? ascii::lowerCased(scheme) : std::string();
}

std::string originOf(std::string_view url) {
    const auto scheme = url.find(beforeAuthority);
    if (scheme == std::string_view::npos) return {};
    const auto end = url.find_first_of(afterAuthority, scheme + beforeAuthority.size());
    return ascii::lowerCased(url.substr(0, end));
}

bool isWebUrl(std::string_view url) noexcept {
    const auto rest = afterWebScheme(url);
    if (!rest) return false;
    auto host = rest->substr(0, rest->find_first_of(afterAuthority));
    if (const auto user = host.rfind('@'); user != std::string_view::npos) host.remove_prefix(user + 1);
    return !host.empty() && host.front() != ':';
}

bool isLegalWebUrl(std::string_view url) noexcept { return isWebUrl(url) && hasLegalUrlCharacters(url); }

bool hasLegalUrlCharacters(std::string_view text) noexcept {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!isLegal(text[i])) return false;
        if (text[i] != '%') continue;
        if (text.size() - i < 3) return false;
        if (!ascii::isHexadecimalDigit(text[i + 1]) || !ascii::isHexadecimalDigit(text[i + 2])) return false;
    }
    return true;
}

std::string percentEscaped(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text) {
        if (isLegal(c)) {
            escaped += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        escaped += {'%', digits[byte >> 4U], digits[byte & 15U]};
    }
    return escaped;
}

}  // namespace orbinel
