#include "hosts/headless/redirects.hpp"

#include <glib.h>

#include <memory>
#include <string>

namespace orbinel::headless {

namespace {

struct Unreference {
    void operator()(GUri* uri) const noexcept { g_uri_unref(uri); }
};
using Uri = std::unique_ptr<GUri, Unreference>;

Uri parsed(const std::string& url) { return Uri(g_uri_parse(url.c_str(), G_URI_FLAGS_ENCODED, nullptr)); }

std::optional<std::string> resolved(const std::string& base, const std::string& location) {
    const std::unique_ptr<gchar, decltype(&g_free)> url(
        g_uri_resolve_relative(base.c_str(), location.c_str(), G_URI_FLAGS_ENCODED, nullptr), &g_free);
    return url ? std::optional<std::string>(url.get()) : std::nullopt;
}

bool isRedirect(int status) { return (status >= 301 && status <= 303) || status == 307 || status == 308; }

}  // namespace

bool isUsableUrl(std::string_view url) {
    const auto uri = parsed(std::string(url));
    if (!uri) return false;
    const std::string_view scheme = g_uri_get_scheme(uri.get());
    const char* host = g_uri_get_host(uri.get());
    return (scheme == "http" || scheme == "https") && host != nullptr && *host != '\0';
}

std::optional<platform::HttpRequest> redirected(const platform::HttpRequest& request,
                                                const platform::HttpResponse& response) {
    if (!isRedirect(response.status)) return std::nullopt;
    const auto location = response.header("Location");
    const auto url = location ? resolved(request.url, *location) : std::nullopt;
    if (!url) return std::nullopt;
    auto next = request;
    next.url = *url;
    return next;
}

}  // namespace orbinel::headless
