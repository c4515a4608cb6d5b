#include "apps/orbinel/play/inspection.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "apps/orbinel/play/fields.hpp"
#include "apps/orbinel/play/remembering_secure_items.hpp"
#include "core/world.hpp"
#include "hosts/common/rapidjson_json.hpp"
#include "inapp/view_tags.hpp"
#include "session/stored_keys.hpp"

namespace orbinel::tool {

namespace {

Value contentOf(const platform::DefaultsStore& store) {
    auto keys = store.keys();
    std::sort(keys.begin(), keys.end());
    Dictionary content;
    for (const auto& key : keys) content.set(key, store.value(key));
    return content;
}

Value sessionRecord(World& world, const RememberingSecureItems&) {
    // Copied first: writing it as a dictionary takes the locks of the events' parameters.
    auto record = world.session.read([](const SessionRecord& current) { return current; });
    return toDictionary(std::move(record));
}

Value defaults(World& world, const RememberingSecureItems&) { return contentOf(world.helper.standardStore()); }

Value appGroup(World& world, const RememberingSecureItems&) {
    const auto store = world.helper.appGroupStore();
    return store != nullptr ? contentOf(*store) : Value();
}

Value secure(World&, const RememberingSecureItems& items) {
    Dictionary content;
    for (const auto& [name, data] : items.content()) {
        auto outcome = hosts::RapidJson().parse(data);
        auto* value = std::get_if<Value>(&outcome);
        content.set(name, value != nullptr ? std::move(*value) : Value(data));
    }
    return content;
}

Value gate(World& world, const RememberingSecureItems&) {
    const auto& helper = world.helper;
    const bool open = helper.sessionGdprConsent() && helper.mobileSessionGdprConsent() && !helper.sdkDisabled();
    return Dictionary{{"open", open},
                      {"session_gdpr_consent", helper.sessionGdprConsent()},
                      {"mobile_session_gdpr_consent", helper.mobileSessionGdprConsent()},
                      {"sdk_disabled", helper.sdkDisabled()}};
}

Value contentCache(World& world, const RememberingSecureItems&) {
    return contentOf(*world.services.defaults->suite(keys::contentSuite));
}

Value campaigns(World& world, const RememberingSecureItems&) {
    return Dictionary{{"nonEventBasedInapps", world.inapps.nonEventBasedInapps()},
                      {"eventBasedInapps", world.inapps.eventBasedInapps()}};
}

/// The library's views that are in the window, by their tags.
Value screen(World& world, const RememberingSecureItems&) {
    Array views;
    const auto overlay = world.services.views->overlay();
    for (const auto tag :
         {kINAPPVIEWTAG, kBUTTONVIEWTAG, kOVERLAYTAG, kPUSHBROWSERVIEWTAG, kPUSHBROWSERCLOSEBUTTONVIEWTAG}) {
        const auto view = overlay != nullptr ? overlay->findTag(tag) : nullptr;
        if (view == nullptr) continue;
        const auto [x, y, width, height] = view->frame();
        views.emplace_back(
            Dictionary{{"tag", tag}, {"frame", Dictionary{{"x", x}, {"y", y}, {"width", width}, {"height", height}}}});
    }
    return views;
}

constexpr std::array<std::pair<std::string_view, Inspection>, 8> inspections{{
    {"session_record", sessionRecord},
    {"defaults", defaults},
    {"app_group", appGroup},
    {"secure", secure},
    {"gate", gate},
    {"content_cache", contentCache},
    {"screen", screen},
    {"campaigns", campaigns},
}};

}  // namespace

Inspection findInspection(std::string_view name) {
    for (const auto& [known, inspection] : inspections) {
        if (known == name) return inspection;
    }
    throw Unusable("there is nothing to inspect under " + inQuotes(name));
}

}  // namespace orbinel::tool
