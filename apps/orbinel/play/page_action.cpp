#include "apps/orbinel/play/page_action.hpp"

#include <glib.h>

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <string_view>
#include <utility>

#include "apps/orbinel/play/fields.hpp"
#include "apps/orbinel/play/not_carried_out.hpp"
#include "core/current_world.hpp"
#include "core/world.hpp"
#include "hosts/common/rapidjson_json.hpp"

namespace orbinel::tool {

namespace {

constexpr std::string_view scheme = "orbinelurl://";
constexpr const char* unescapedByPages = "!*'()";  // beside letters, digits, "-", ".", "_" and "~"

PageAction readFailure(const Value& json) {
    Fields fields(json, "\"fail\"");
    platform::LoadFailure failure;
    failure.domain = requireText(fields.require("domain"), "\"domain\"");
    failure.code = static_cast<std::int32_t>(requireWholeNumber(fields.require("code"), "\"code\"",
                                                                std::numeric_limits<std::int32_t>::min(),
                                                                std::numeric_limits<std::int32_t>::max()));
    if (const auto* provisional = fields.find("provisional")) {
        failure.provisional = requireBoolean(*provisional, "\"provisional\"");
    }
    fields.expectNoOthers();
    failure.description = "The scenario lets the page fail.";
    return [failure](PlayedPage& page) { page.fail(failure); };
}

InappButton readNativeButton(const Value& json) {
    Fields fields(json, "a native button");
    InappButton button;
    const auto text = [&](std::string_view key, std::string& target) {
        if (const auto* value = fields.find(key)) target = requireText(*value, inQuotes(key));
    };
    button.tag = static_cast<std::int32_t>(requireWholeNumber(fields.require("tag"), "\"tag\"", 0, 1'000'000));
    text("hint", button.accessibilityHint);
    text("label", button.accessibilityLabel);
    text("value", button.accessibilityValue);
    text("language", button.accessibilityLanguage);
    text("identifier", button.accessibilityIdentifier);
    fields.expectNoOthers();
    return button;
}

/// Native buttons are of messages without a page of their own; what they do is the library's.
void press(const InappButton& native) {
    const auto world = current_world::get();
    if (world == nullptr) throw NotCarriedOut("the library does not run");
    world->inappButtons.inappButtonClicked(native);
}

PageAction readTap(const Value& json) {
    if (json.ifDictionary() != nullptr) {
        return [button = readNativeButton(json)](PlayedPage&) { press(button); };
    }
    const auto& what = json.stringOrEmpty();
    if (what == "close") return [](PlayedPage& page) { page.tapClose(); };
    if (what == "browser_close") return [](PlayedPage& page) { page.tapBrowserClose(); };
    throw Unusable("\"tap\" can only be \"close\", \"browser_close\" or a native button");
}

void requireTrue(const Value& json, std::string_view what) {
    if (!requireBoolean(json, what)) throw Unusable(std::string(what) + " can only be true");
}

PageAction readNavigation(const Value& json, Fields& fields) {
    const auto& url = requireText(json, "\"navigate\"");
    const auto* link = fields.find("link");
    return [url, followed = link != nullptr && requireBoolean(*link, "\"link\"")](PlayedPage& page) {
        page.navigate(url, followed);
    };
}

PageAction readAction(Fields& fields) {
    if (const auto* json = fields.find("finish")) {
        requireTrue(*json, "\"finish\"");
        return [](PlayedPage& page) { page.finish(); };
    }
    if (const auto* json = fields.find("fail")) return readFailure(*json);
    if (const auto* json = fields.find("progress")) {
        return [progress = requireNumber(*json, "\"progress\"", 0, 1)](PlayedPage& page) { page.progress(progress); };
    }
    if (const auto* json = fields.find("send")) {
        return [url = bridgeUrl(*json)](PlayedPage& page) { page.navigate(url, false); };
    }
    if (const auto* json = fields.find("navigate")) return readNavigation(*json, fields);
    if (const auto* json = fields.find("message")) return [body = *json](PlayedPage& page) { page.message(body); };
    if (const auto* json = fields.find("terminated")) {
        requireTrue(*json, "\"terminated\"");
        return [](PlayedPage& page) { page.terminate(); };
    }
    if (const auto* json = fields.find("tap")) return readTap(*json);
    fields.expectNoOthers();
    throw Unusable(
        "\"template\" needs \"finish\", \"fail\", \"progress\", \"send\", \"navigate\", \"message\", \"terminated\" or "
        "\"tap\"");
}

}  // namespace

std::string bridgeUrl(const Value& actions) {
    const auto text = hosts::RapidJson().serialise(actions, platform::JsonStyle::compact);
    if (!text) throw Unusable("\"send\" is no JSON");
    constexpr gboolean allowUtf8 = FALSE;
    const std::unique_ptr<char, decltype(&g_free)> escaped(
        g_uri_escape_string(text->c_str(), unescapedByPages, allowUtf8), &g_free);
    return std::string(scheme) + escaped.get();
}

PageAction readPageAction(const Value& json) {
    Fields fields(json, "\"template\"");
    auto action = readAction(fields);
    fields.expectNoOthers();
    return action;
}

}  // namespace orbinel::tool
