#include "push/universal_links.hpp"

#include <utility>
#include <variant>

#include "base/guard.hpp"
#include "base/percent_decoding.hpp"
#include "base/url.hpp"

namespace orbinel {

namespace {

constexpr std::string_view vendorMark = "isOrb";
constexpr std::string_view yes = "1";

/// The text before the first of the delimiters, which is taken off with it.
std::string_view takeUntil(std::string_view& text, std::string_view delimiter) {
    const auto found = text.find(delimiter);
    const auto taken = text.substr(0, found);
    text.remove_prefix(found == std::string_view::npos ? text.size() : found + delimiter.size());
    return taken;
}

}  // namespace

Dictionary queryParametersFromURL(std::string_view url) {
    auto query = takeUntil(url, "#");
    takeUntil(query, "?");
    Dictionary parameters;
    while (!query.empty()) {
        auto value = takeUntil(query, "&");
        const bool hasValue = value.find('=') != std::string_view::npos;
        auto name = percentDecoded(takeUntil(value, "="));
        if (!name.empty()) parameters.set(name, hasValue ? Value(percentDecoded(value)) : Value(Null{}));
    }
    return parameters;
}

UniversalLinks::UniversalLinks(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      session_(needs.session),
      lifetime_(needs.lifetime),
      http_(needs.http) {}

void UniversalLinks::handleUniversalLink(const UserActivity& activity) noexcept {
    guarded(reports_, "+[Orbinel handleUniversalLink:]", [&] {
        if (!helper_.shouldProceed()) return;
        if (activity.type != browsingWebActivityType || !activity.webpageUrl) return;
        auto url = percentEscaped(*activity.webpageUrl);
        if (!isLegalWebUrl(url)) return reports_.note("Ignored a link that opened the application: it is no web page.");
        follow(std::move(url));
    });
}

void UniversalLinks::follow(std::string url) {
    platform::HttpRequest request;
    request.method = "GET";
    request.url = std::move(url);
    const auto place = requests_.open();
    auto completion = [this, place](const platform::HttpOutcome& outcome) {
        requests_.close(place);
        guarded(reports_, "+[Orbinel handleUniversalLink:]", [&] { complete(outcome); });
    };
    requests_.keep(place, http_.send(std::move(request), lifetime_.whileAlive(std::move(completion))));
}

void UniversalLinks::complete(const platform::HttpOutcome& outcome) {
    const auto* response = std::get_if<platform::HttpResponse>(&outcome);
    if (response == nullptr) return reports_.note("A link that opened the application could not be followed.");
    if (queryParametersFromURL(response->finalUrl)[vendorMark] != Value(yes)) return;
    session_.update([&](SessionRecord& record) { record.universal_link = response->finalUrl; });
}

}  // namespace orbinel
