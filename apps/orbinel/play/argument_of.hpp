#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <type_traits>
#include <vector>

#include "apps/orbinel/play/operation.hpp"
#include "orbinel/optional_text.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/user_activity.hpp"

namespace orbinel::tool {

/// How an argument of type T is written in a scenario, and made of what the scenario gives. One specialisation for
/// every type that the library's operations take.
template <typename T>
struct ArgumentOf;

/// The value of an argument that is one, a kept one included.
inline const Value& valueOf(const CallArgument& argument) {
    const auto* thing = std::get_if<Thing>(&argument);
    return thing != nullptr ? std::get<Value>(*thing) : std::get<Value>(argument);
}

template <>
struct ArgumentOf<OptionalText> {
    static constexpr auto kind = ArgumentKind::text;
    static OptionalText make(const CallArgument& argument, Trace&) {
        const auto* text = valueOf(argument).ifString();
        return text != nullptr ? OptionalText(*text) : OptionalText(nullptr);
    }
};

template <>
struct ArgumentOf<std::int32_t> {
    static constexpr auto kind = ArgumentKind::int32;
    static std::int32_t make(const CallArgument& argument, Trace&) { return *valueOf(argument).ifInt32(); }
};

/// Codes of the library's enumerations: any number, also one that has no name.
template <typename T>
requires std::is_enum_v<T>
struct ArgumentOf<T> {
    static constexpr auto kind = ArgumentKind::int32;
    static T make(const CallArgument& argument, Trace&) { return static_cast<T>(*valueOf(argument).ifInt32()); }
};

template <>
struct ArgumentOf<double> {
    static constexpr auto kind = ArgumentKind::number;
    static double make(const CallArgument& argument, Trace&) { return valueOf(argument).number().value_or(0); }
};

template <>
struct ArgumentOf<bool> {
    static constexpr auto kind = ArgumentKind::boolean;
    static bool make(const CallArgument& argument, Trace&) { return valueOf(argument).truth(); }
};

template <>
struct ArgumentOf<std::optional<Date>> {
    static constexpr auto kind = ArgumentKind::date;
    static std::optional<Date> make(const CallArgument& argument, Trace&) {
        const auto* date = valueOf(argument).ifDate();
        return date != nullptr ? std::optional(*date) : std::nullopt;
    }
};

template <>
struct ArgumentOf<Array> {
    static constexpr auto kind = ArgumentKind::array;
    /// A kept result may have been nothing: that is an empty list.
    static const Array& make(const CallArgument& argument, Trace&) {
        static const Array nothing;
        const auto* array = valueOf(argument).ifArray();
        return array != nullptr ? *array : nothing;
    }
};

template <>
struct ArgumentOf<Dictionary> {
    static constexpr auto kind = ArgumentKind::dictionary;
    static const Dictionary& make(const CallArgument& argument, Trace&) {
        static const Dictionary nothing;
        const auto* dictionary = valueOf(argument).ifDictionary();
        return dictionary != nullptr ? *dictionary : nothing;
    }
};

template <>
struct ArgumentOf<std::optional<Dictionary>> {
    static constexpr auto kind = ArgumentKind::anyDictionary;
    static std::optional<Dictionary> make(const CallArgument& argument, Trace&) {
        const auto* dictionary = valueOf(argument).ifDictionary();
        return dictionary != nullptr ? std::optional(*dictionary) : std::nullopt;
    }
};

/// Bytes are the text that {"$bytes"} makes; they are the scenario's own.
template <>
struct ArgumentOf<std::span<const std::uint8_t>> {
    static constexpr auto kind = ArgumentKind::text;
    static std::span<const std::uint8_t> make(const CallArgument& argument, Trace&) {
        const auto& bytes = valueOf(argument).stringOrEmpty();
        return {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
    }
};

/// No operation looks at the application itself.
template <>
struct ArgumentOf<const platform::Application*> {
    static constexpr auto kind = ArgumentKind::any;
    static const platform::Application* make(const CallArgument&, Trace&) { return nullptr; }
};

/// {"activityType", "webpageURL"}, each of which may be left out.
template <>
struct ArgumentOf<UserActivity> {
    static constexpr auto kind = ArgumentKind::userActivity;
    static UserActivity make(const CallArgument& argument, Trace&) {
        UserActivity activity;
        const auto* fields = valueOf(argument).ifDictionary();
        if (fields == nullptr) return activity;
        if (const auto* type = (*fields)["activityType"].ifString()) activity.type = *type;
        if (const auto* url = (*fields)["webpageURL"].ifString()) activity.webpageUrl = *url;
        return activity;
    }
};

template <>
struct ArgumentOf<Value> {
    static constexpr auto kind = ArgumentKind::any;
    static const Value& make(const CallArgument& argument, Trace&) { return valueOf(argument); }
};

/// An object kept under a name; null stands for one of no library.
template <typename Object, ArgumentKind objectKind>
struct ObjectArgument {
    static constexpr auto kind = objectKind;
    static Object make(const CallArgument& argument, Trace&) {
        const auto* thing = std::get_if<Thing>(&argument);
        return thing != nullptr ? of(*thing) : Object();
    }
    static Object of(const Thing& thing) {
        const auto* object = std::get_if<std::shared_ptr<Object>>(&thing);
        return object != nullptr ? **object : Object();
    }
};
template <>
struct ArgumentOf<OrbinelIdentifiers> : ObjectArgument<OrbinelIdentifiers, ArgumentKind::identifiers> {};
template <>
struct ArgumentOf<std::vector<OrbinelProduct>> {
    static constexpr auto kind = ArgumentKind::products;
    static std::vector<OrbinelProduct> make(const CallArgument& argument, Trace&) {
        std::vector<OrbinelProduct> products;
        for (const auto& thing : std::get<std::vector<Thing>>(argument)) {
            products.push_back(ObjectArgument<OrbinelProduct, ArgumentKind::product>::of(thing));
        }
        return products;
    }
};

/// The scenario's own product, not a copy: what an operation stores in it stays there.
template <>
struct ArgumentOf<OrbinelProduct> {
    static constexpr auto kind = ArgumentKind::product;
    static const OrbinelProduct& make(const CallArgument& argument, Trace&) {
        static const OrbinelProduct absent;
        const auto* thing = std::get_if<Thing>(&argument);
        return thing != nullptr ? *std::get<std::shared_ptr<OrbinelProduct>>(*thing) : absent;
    }
};

/// What a callback is handed, as the trace shows it.
template <typename Content>
Value traced(const Content& content) {
    return Value(content);
}
template <typename Content>
Value traced(const std::optional<Content>& content) {
    return content ? Value(*content) : Value(Null{});
}

/// A callback: each call of it is traced.
template <typename... Contents>
struct ArgumentOf<std::function<void(Contents...)>> {
    static constexpr auto kind = ArgumentKind::anyCallback;
    static std::function<void(Contents...)> make(const CallArgument& argument, Trace& trace) {
        const auto* callback = std::get_if<CallbackName>(&argument);
        if (callback == nullptr) return nullptr;
        return [&trace, name = callback->name](const std::decay_t<Contents>&... contents) {
            trace.write({{"callback", name}, {"args", Array{traced(contents)...}}});
        };
    }
};

}  // namespace orbinel::tool
