#include "inapp/template_url.hpp"

#include <algorithm>

#include "base/guard.hpp"

namespace orbinel {

namespace {

bool isOneOf(char c, std::string_view characters) { return characters.find(c) != std::string_view::npos; }
bool isLetterOrDigit(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); }
bool isHexadecimal(char c) { return isOneOf(c, "0123456789abcdefABCDEF"); }

/// Made of what RFC 3986 allows anywhere in a URL reference.
bool isUrlText(std::string_view text) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '%') {
            if (at + 2 >= text.size() || !isHexadecimal(text[at + 1]) || !isHexadecimal(text[at + 2])) return false;
            at += 2;
        } else if (!isLetterOrDigit(text[at]) && !isOneOf(text[at], "-._~:/?#[]@!$&'()*+,;=")) {
            return false;
        }
    }
    return !text.empty();
}

std::string lowered(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

}  // namespace

std::optional<std::string> TemplateUrl::getTemplateURLFromContent(const Dictionary& content) noexcept {
    auto url = guarded(needs_.reports, "-[OrbinelInapp getTemplateURLFromContent]", std::string(),
                       [&] { return text(content); });
    needs_.reports.log(LogType::inapp, LogLevel::error, "Template URL is about to load.", [&] {
        return Dictionary{{"url", url}};
    });
    if (!isUrlText(url)) return std::nullopt;
    return url;
}

std::string TemplateUrl::text(const Dictionary& content) {
    const auto udid = needs_.helper.getUdid().value_or("");
    const auto stored = needs_.identity.storedOrbinelId();
    const auto& person = needs_.identity.isOrbinelIdValid(stored) ? stored.stringOrEmpty() : udid;
    const auto language = needs_.application.bundle().preferredLocalisation.value_or("");
    return content["template_url"].stringOrEmpty() + "/" + udid + "/" + person + "/" + language;
}

bool isWebUrl(std::string_view url) noexcept {
    for (const std::string_view scheme : {"http://", "https://"}) {
        if (lowered(url.substr(0, scheme.size())) == scheme) {
            return url.size() > scheme.size() && !isOneOf(url[scheme.size()], "/?#");
        }
    }
    return false;
}

std::string originOf(std::string_view url) {
    constexpr std::string_view separator = "://";
    const auto scheme = url.find(separator);
    if (scheme == std::string_view::npos) return {};
    const auto end = url.find_first_of("/?#", scheme + separator.size());
    return lowered(url.substr(0, end));
}

}  // namespace orbinel
