#include "tools/tool_links.hpp"

#include <algorithm>
#include <optional>
#include <string>

#include "base/guard.hpp"

namespace orbinel {

namespace {

constexpr std::string_view schemeEnd = "://";

struct ToolLink {
    std::string_view tool;
    std::optional<std::string> token;
};

/// A token travels in a header: a line break in it would end the header.
bool canStandInUrl(char c) noexcept {
    const auto byte = static_cast<unsigned char>(c);
    return byte > 0x20 && byte != 0x7F;
}

/// What stands between the first "://" and the next one, split at its slashes; further pieces do not count.
std::optional<ToolLink> read(std::string_view url) {
    const auto end = url.find(schemeEnd);
    if (end == std::string_view::npos || !std::all_of(url.begin(), url.end(), canStandInUrl)) return std::nullopt;
    url.remove_prefix(end + schemeEnd.size());
    url = url.substr(0, url.find(schemeEnd));
    const auto slash = url.find('/');
    if (slash == std::string_view::npos) return ToolLink{url, std::nullopt};
    const auto rest = url.substr(slash + 1);
    return ToolLink{url.substr(0, slash), std::string(rest.substr(0, rest.find('/')))};
}

}  // namespace

void ToolLinks::handleUrl(std::string_view url) noexcept {
    guarded(reports_, "+[Orbinel handleUrl:]", [&] {
        auto link = read(url);
        if (!link) return;
        if (link->tool == "test_device") testDevices_.setTestDeviceToken(std::move(link->token));
        if (link->tool == "connect_wizard") wizard_.initConnection(std::move(link->token));
    });
}

}  // namespace orbinel
