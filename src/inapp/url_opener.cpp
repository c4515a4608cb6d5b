#include "inapp/url_opener.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "base/guard.hpp"
#include "inapp/main_thread.hpp"
#include "personalisation/recommendation_url.hpp"

namespace orbinel {

namespace {

constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
constexpr bool isLetter(char c) { return lower(c) >= 'a' && lower(c) <= 'z'; }

/// The scheme (RFC 3986, section 3.1) in lower case; empty where the text begins with none.
std::string schemeOf(std::string_view url) {
    std::string scheme(url.substr(0, url.find(':')));
    if (scheme.size() == url.size() || scheme.empty() || !isLetter(scheme.front())) return {};
    std::transform(scheme.begin(), scheme.end(), scheme.begin(), lower);
    const bool legal = std::all_of(scheme.begin(), scheme.end(), [](char c) {
        return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
    });
    return legal ? scheme : std::string();
}

template <typename List>
bool holds(const List& list, std::string_view text) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

constexpr std::array<std::string_view, 2> webSchemes{"http", "https"};
constexpr std::array<std::string_view, 2> personSchemes{"mailto", "tel"};
constexpr std::array<std::string_view, 2> neverOpened{"file", "javascript"};  // even where an application claims them

}  // namespace

bool isWebPage(std::string_view url) noexcept { return recommendation_url::isUrl(url); }

UrlOpener::UrlOpener(const Needs& needs)
    : reports_(needs.reports),
      lifetime_(needs.lifetime),
      scheduler_(needs.scheduler),
      application_(needs.application) {}

std::optional<std::string> UrlOpener::permitted(std::string_view url) const {
    const auto scheme = schemeOf(url);
    if (scheme.empty() || holds(neverOpened, scheme)) return std::nullopt;
    auto escaped = recommendation_url::percentEscaped(url);
    const bool may = holds(webSchemes, scheme)
                         ? isWebPage(escaped)
                         : holds(personSchemes, scheme) || holds(application_.bundle().urlSchemes, scheme);
    return may ? std::optional(std::move(escaped)) : std::nullopt;
}

void UrlOpener::openUrl(const std::string& url, std::function<void()> completion) noexcept {
    guarded(reports_, "-[OrbinelInapp openUrl:]", [&] {
        runOnMain(scheduler_, lifetime_, [this, url, completion = std::move(completion)]() mutable {
            openOnMain(url, std::move(completion));
        });
    });
}

void UrlOpener::openInternally(const std::string& url, InappScreen& screen) noexcept {
    guarded(reports_, "-[OrbinelInapp openBrowserUrl:]", [&] {
        const auto permittedUrl = permitted(url);
        if (permittedUrl && isWebPage(*permittedUrl)) return screen.openBrowserUrl(*permittedUrl);
        openUrl(url, {});
    });
}

void UrlOpener::openOnMain(const std::string& url, std::function<void()> completion) {
    const auto permittedUrl = permitted(url);
    if (!permittedUrl) {
        reports_.note([&] { return "Refused to open " + url + ": its scheme is not permitted, or it is no URL."; });
        if (completion) scheduler_.postMain(lifetime_.whileAlive(std::move(completion)));
        return;
    }
    application_.openUrl(*permittedUrl, lifetime_.whileAlive([completion = std::move(completion)](bool) {
        if (completion) completion();
    }));
}

}  // namespace orbinel
