#include "apps/orbinel/play/argument_kinds.hpp"

#include <algorithm>
#include <array>
#include <string>

#include "apps/orbinel/play/fields.hpp"

namespace orbinel::tool {

namespace {

using Kind = ArgumentKind;

struct KindRule {
    Kind kind;
    std::string_view inWords;
    bool (*takes)(const Value& value);
    bool (*takesKept)(ThingKind kept);
};

bool isDictionary(const Value& value) { return value.ifDictionary() != nullptr; }
bool isAbsent(const Value& value) { return value.isAbsent(); }

bool isUserActivity(const Value& value) {
    const auto* fields = value.ifDictionary();
    return fields != nullptr && std::all_of(fields->begin(), fields->end(), [](const auto& field) {
               return (field.first == "activityType" || field.first == "webpageURL") &&
                      field.second.ifString() != nullptr;
           });
}

bool never(const Value&) { return false; }
bool neverKept(ThingKind) { return false; }

template <ThingKind kind>
bool isKept(ThingKind kept) {
    return kept == kind;
}

bool isKeptValue(ThingKind kept) {
    return kept == ThingKind::text || kept == ThingKind::boolean || kept == ThingKind::number ||
           kept == ThingKind::array || kept == ThingKind::dictionary;
}

const std::array kindRules{
    KindRule{Kind::text, "a text or null", [](const Value& v) { return v.isAbsent() || v.ifString() != nullptr; },
             isKept<ThingKind::text>},
    KindRule{Kind::int32, "a whole number of 32 bits", [](const Value& v) { return v.ifInt32() != nullptr; },
             neverKept},
    KindRule{Kind::number, "a number", [](const Value& v) { return v.isNumber(); }, isKept<ThingKind::number>},
    KindRule{Kind::boolean, "true or false", [](const Value& v) { return v.ifBoolean() != nullptr; },
             isKept<ThingKind::boolean>},
    KindRule{Kind::date, "a {\"$date\"} or null", [](const Value& v) { return v.isAbsent() || v.ifDate() != nullptr; },
             neverKept},
    KindRule{Kind::array, "a list", [](const Value& v) { return v.ifArray() != nullptr; }, isKept<ThingKind::array>},
    KindRule{Kind::dictionary, "an object", isDictionary, isKept<ThingKind::dictionary>},
    KindRule{Kind::anyDictionary, "an object or null", [](const Value& v) { return v.isAbsent() || isDictionary(v); },
             isKept<ThingKind::dictionary>},
    KindRule{Kind::any, "a value", [](const Value&) { return true; }, isKeptValue},
    KindRule{Kind::callback, "a {\"$callback\"}", never, neverKept},
    KindRule{Kind::anyCallback, "a {\"$callback\"} or null", isAbsent, neverKept},
    KindRule{Kind::target, "a {\"$ref\"} to a target or null", isAbsent, isKept<ThingKind::target>},
    KindRule{Kind::identifiers, "a {\"$ref\"} to identifiers or null", isAbsent, isKept<ThingKind::identifiers>},
    KindRule{Kind::product, "a {\"$ref\"} to a product or null", isAbsent, isKept<ThingKind::product>},
    KindRule{Kind::userActivity, "an object with the texts activityType and webpageURL or null",
             [](const Value& v) { return v.isAbsent() || isUserActivity(v); }, neverKept},
    KindRule{Kind::products, "a list of {\"$ref\"} to products", never, neverKept},
};

}  // namespace

void checkArgument(const Argument& argument, ThingKind kept, ArgumentKind wanted, std::string_view what) {
    const auto& rule =
        *std::find_if(kindRules.begin(), kindRules.end(), [&](const KindRule& one) { return one.kind == wanted; });
    const auto refuse = [&](std::string_view given) {
        throw Unusable(std::string(what) + " must be " + std::string(rule.inWords) + ", not " + std::string(given));
    };
    if (const auto* value = std::get_if<Value>(&argument)) {
        if (!rule.takes(*value)) refuse(kindInWords(*value));
    } else if (std::holds_alternative<Reference>(argument)) {
        if (!rule.takesKept(kept)) refuse(inWords(kept));
    } else if (wanted != Kind::callback && wanted != Kind::anyCallback) {
        refuse("a callback");
    }
}

}  // namespace orbinel::tool
