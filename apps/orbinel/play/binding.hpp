#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

#include "apps/orbinel/play/argument_of.hpp"
#include "apps/orbinel/play/operation.hpp"
#include "apps/orbinel/play/result_of.hpp"

/// Makes operations of scenarios out of functions of the library: the kinds of arguments and result follow from the
/// function's own type.
namespace orbinel::tool {

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
