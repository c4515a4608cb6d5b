#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <type_traits>
#include <utility>

#include "apps/orbinel/play/operation.hpp"
#include "orbinel/optional_text.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/user_activity.hpp"

/// Makes operations of scenarios out of functions of the library: the kinds of arguments and result follow from the
/// function's own type.
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

/// A callback with one argument: each call of it is traced.
template <typename Content>
struct ArgumentOf<std::function<void(Content)>> {
    static constexpr auto kind = ArgumentKind::anyCallback;
    static std::function<void(Content)> make(const CallArgument& argument, Trace& trace) {
        const auto* callback = std::get_if<CallbackName>(&argument);
        if (callback == nullptr) return nullptr;
        return [&trace, name = callback->name](const std::decay_t<Content>& content) {
            trace.write({{"callback", name}, {"args", Array{Value(content)}}});
        };
    }
};

/// How a result of type T appears in a scenario.
template <ThingKind thingKind>
struct ResultKind {
    static constexpr auto kind = thingKind;
};
template <typename T>
struct ResultOf : ResultKind<ThingKind::nothing> {};
template <>
struct ResultOf<bool> : ResultKind<ThingKind::boolean> {};
template <>
struct ResultOf<std::int32_t> : ResultKind<ThingKind::number> {};
template <>
struct ResultOf<double> : ResultKind<ThingKind::number> {};
template <>
struct ResultOf<std::string> : ResultKind<ThingKind::text> {};
template <>
struct ResultOf<Array> : ResultKind<ThingKind::array> {};
template <>
struct ResultOf<Dictionary> : ResultKind<ThingKind::dictionary> {};
template <>
struct ResultOf<OrbinelEvent> : ResultKind<ThingKind::event> {};
template <>
struct ResultOf<OrbinelUser> : ResultKind<ThingKind::user> {};
template <>
struct ResultOf<OrbinelIdentifiers> : ResultKind<ThingKind::identifiers> {};
template <>
struct ResultOf<OrbinelProduct> : ResultKind<ThingKind::product> {};
template <typename T>
struct ResultOf<std::optional<T>> : ResultOf<T> {};

/// Objects are kept by pointer, values as they are.
template <typename Result>
Thing thingOf(Result&& result) {
    using Plain = std::decay_t<Result>;
    if constexpr (std::is_constructible_v<Value, Plain>) {
        return Value(std::forward<Result>(result));
    } else {
        return std::make_shared<Plain>(std::forward<Result>(result));
    }
}

/// Calls the function with arguments made of what the scenario gives; nothing where it gives nothing back.
template <typename... Arguments, typename Function, std::size_t... index>
Thing callWith(Function&& function, std::span<const CallArgument> given, Trace& trace, std::index_sequence<index...>) {
    const auto call = [&]() -> decltype(auto) {
        return function(ArgumentOf<std::decay_t<Arguments>>::make(given[index], trace)...);
    };
    if constexpr (std::is_void_v<decltype(call())>) {
        call();
        return {};
    } else {
        return thingOf(call());
    }
}

/// An operation with these types. `bindTo` gives the function to call for a receiver.
template <typename Result, typename... Arguments, typename Bind>
Operation operationOf(std::string_view name, Bind bindTo) {
    return {name,
            {ArgumentOf<std::decay_t<Arguments>>::kind...},
            ResultOf<Result>::kind,
            [bindTo](const Thing& receiver, std::span<const CallArgument> given, Trace& trace) {
                return callWith<Arguments...>(bindTo(receiver), given, trace, std::index_sequence_for<Arguments...>());
            }};
}

/// An operation of the facade.
template <typename Result, typename... Arguments>
Operation facade(std::string_view name, Result (*function)(Arguments...) noexcept) {
    return operationOf<Result, Arguments...>(name, [function](const Thing&) { return function; });
}

/// An operation that gives its own object, so that calls can be chained on it.
template <typename Receiver, typename... Arguments>
Operation chained(std::string_view name, Receiver& (Receiver::*function)(Arguments...) & noexcept) {
    return operationOf<Receiver, Arguments...>(name, [function](const Thing& receiver) {
        return [&object = *std::get<std::shared_ptr<Receiver>>(receiver), function](auto&&... arguments) {
            (object.*function)(arguments...);
        };
    });
}

/// Any other operation of an object.
template <typename Receiver, typename Result, typename... Arguments, typename Function>
Operation methodOf(std::string_view name, Function function) {
    return operationOf<Result, Arguments...>(name, [function](const Thing& receiver) {
        return [&object = *std::get<std::shared_ptr<Receiver>>(receiver), function](auto&&... arguments) {
            return (object.*function)(arguments...);
        };
    });
}

template <typename Receiver, typename Result, typename... Arguments>
Operation method(std::string_view name, Result (Receiver::*function)(Arguments...) noexcept) {
    return methodOf<Receiver, Result, Arguments...>(name, function);
}

template <typename Receiver, typename Result, typename... Arguments>
Operation method(std::string_view name, Result (Receiver::*function)(Arguments...) const noexcept) {
    return methodOf<Receiver, Result, Arguments...>(name, function);
}

/// Makes an object that a scenario can keep.
template <typename Object>
Operation maker(std::string_view name, ThingKind kind) {
    return {name, {}, kind, [](const Thing&, std::span<const CallArgument>, Trace&) -> Thing {
                return std::make_shared<Object>();
            }};
}

/// A registration of a callback for a target. `registerIt` is called with the traced callback and the weak target.
template <typename Content, typename Register>
Operation registration(std::string_view name, Register registerIt) {
    return {name,
            {ArgumentKind::callback, ArgumentKind::target},
            ThingKind::nothing,
            [registerIt](const Thing&, std::span<const CallArgument> given, Trace& trace) -> Thing {
                std::weak_ptr<Target> target;
                if (const auto* thing = std::get_if<Thing>(&given[1]))
                    target = std::get<std::shared_ptr<Target>>(*thing);
                const auto callback = ArgumentOf<std::function<void(const Content&)>>::make(given[0], trace);
                registerIt([callback](Target&, const Content& content) { callback(content); }, target);
                return {};
            }};
}

}  // namespace orbinel::tool
