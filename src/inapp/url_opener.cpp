#include "inapp/url_opener.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "base/guard.hpp"
#include "base/url.hpp"

namespace orbinel {

namespace {

template <typename List>
bool holds(const List& list, std::string_view text) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

constexpr std::array<std::string_view, 2> webSchemes{"http", "https"};
constexpr std::array<std::string_view, 2> personSchemes{"mailto", "tel"};
constexpr std::array<std::string_view, 2> neverOpened{"file", "javascript"};  // even where an application claims them

}  // namespace

UrlOpener::UrlOpener(const Needs& needs)
    : reports_(needs.reports),
      lifetime_(needs.lifetime),
      scheduler_(needs.scheduler),
      mainThread_({needs.reports, needs.lifetime, needs.scheduler}),
      application_(needs.application) {}

std::optional<std::string> UrlOpener::permitted(std::string_view url) const {
    const auto scheme = schemeOf(url);
    if (scheme.empty() || holds(neverOpened, scheme)) return std::nullopt;
    auto escaped = percentEscaped(url);
    const bool may = holds(webSchemes, scheme)
                         ? isLegalWebUrl(escaped)
                         : holds(personSchemes, scheme) || holds(application_.bundle().urlSchemes, scheme);
    return may ? std::optional(std::move(escaped)) : std::nullopt;
}

void UrlOpener::openUrl(const std::string& url, std::function<void()> completion) noexcept {
    mainThread_.run("-[OrbinelInapp openUrl:]", [this, url, completion = std::move(completion)]() mutable {
        openOnMain(url, std::move(completion));
    });
}

void UrlOpener::openInternally(const std::string& url, InappScreen& screen) noexcept {
    guarded(reports_, "-[OrbinelInapp openBrowserUrl:]", [&] {
        const auto permittedUrl = permitted(url);
        if (permittedUrl && isLegalWebUrl(*permittedUrl)) return screen.openBrowserUrl(*permittedUrl);
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
