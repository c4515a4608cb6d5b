#include "apps/orbinel/backend/access.hpp"

#include <glib.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace orbinel::tool {
namespace {

constexpr std::array<std::string_view, 3> names{"127.0.0.1", "localhost", "[::1]"};
constexpr int defaultPort = 80;  // left out of a Host header

std::string lowerCased(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) { return g_ascii_tolower(c); });
    return text;
}

bool isOwnHost(const std::string& host, int port) {
    return std::any_of(names.begin(), names.end(), [&](std::string_view name) {
        const auto own = std::string(name);
        return host == own + ':' + std::to_string(port) || (port == defaultPort && host == own);
    });
}

bool changesNothing(const std::string& method) { return method == "GET" || method == "HEAD"; }

}  // namespace

std::string accessProblem(const httplib::Request& request, int port) {
    const auto host = lowerCased(request.get_header_value("Host"));
    if (request.get_header_value_count("Host") != 1 || !isOwnHost(host, port)) {
        return "the backend is reached as 127.0.0.1, localhost or [::1], with its port, and by no other name";
    }
    if (changesNothing(request.method) || !request.has_header("Origin")) return {};
    const auto origin = lowerCased(request.get_header_value("Origin"));
    return origin == "http://" + host ? std::string() : "a page of another origin may not change anything here";
}

bool comesFromAnotherSite(const httplib::Request& request) {
    const auto site = request.get_header_value("Sec-Fetch-Site");
    return !site.empty() && site != "same-origin" && site != "none";
}

}  // namespace orbinel::tool
