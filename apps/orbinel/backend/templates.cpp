#include "apps/orbinel/backend/templates.hpp"

#include <glib.h>

#include <algorithm>
#include <vector>

#include "apps/orbinel/backend/json_writing.hpp"

namespace orbinel::tool {
namespace {

constexpr std::string_view root = "/templates/";
constexpr std::size_t maxName = 64;
constexpr std::size_t maxPart = 80;  // bytes shown of a part of the path

// Actions are navigations of a hidden frame, which the policy has to allow by their scheme.
constexpr const char* policy =
    "default-src 'none'; script-src 'unsafe-inline'; style-src 'unsafe-inline'; img-src data:; frame-src orbinelurl:; "
    "base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

std::vector<std::string> partsOf(std::string_view text) {
    std::vector<std::string> parts;
    for (auto slash = text.find('/'); slash != std::string_view::npos; slash = text.find('/')) {
        parts.emplace_back(text.substr(0, slash));
        text.remove_prefix(slash + 1);
    }
    parts.emplace_back(text);
    return parts;
}

/// None of them leads out of the directory.
bool isTemplateName(const std::string& text) {
    return !text.empty() && text.size() <= maxName &&
           text.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_-") == std::string::npos;
}

}  // namespace

bool isTemplatePath(std::string_view path) { return path.starts_with(root); }

std::optional<TemplateAddress> templateAddressOf(std::string_view path) {
    if (!isTemplatePath(path)) return std::nullopt;
    auto parts = partsOf(path.substr(root.size()));
    const bool complete = parts.size() == 4 &&
                          std::none_of(parts.begin(), parts.end() - 1, [](const auto& part) { return part.empty(); });
    if (!complete || !isTemplateName(parts[0])) return std::nullopt;
    return TemplateAddress{std::move(parts[0]), std::move(parts[1]), std::move(parts[2]), std::move(parts[3])};
}

Reading readTemplateRequest(const Incoming& request) {
    Reading reading;
    const auto address = templateAddressOf(request.path);
    if (!address) {
        reading.problem = "a page is reached by /templates/NAME/UDID/USER/LANGUAGE, its name made of a-z, 0-9, _ and -";
    } else if (request.method != "GET") {
        reading.problem = "a page is reached by GET, not by " + request.method;
    } else {
        reading.served = true;
        reading.summary = "page " + address->name + ", device " + shortened(address->device, maxPart) + ", user " +
                          shortened(address->user, maxPart) + ", language " + shortened(address->language, maxPart);
    }
    return reading;
}

Reply Templates::reply(const TemplateAddress& address) const {
    const auto file = directory_ / (address.name + ".html");
    gchar* content = nullptr;
    gsize size = 0;
    if (!g_file_get_contents(file.c_str(), &content, &size, nullptr)) {
        return refusal(404, "there is no page " + file.string());
    }
    Reply reply;
    reply.body.assign(content, size);
    g_free(content);
    reply.headers = {{"Content-Type", "text/html; charset=utf-8"},
                     {"Content-Security-Policy", policy},
                     {"X-Content-Type-Options", "nosniff"},
                     {"Referrer-Policy", "no-referrer"},
                     {"Cache-Control", "no-store"}};
    return reply;
}

}  // namespace orbinel::tool
