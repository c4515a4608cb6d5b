#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "apps/orbinel/play/things.hpp"
#include "orbinel/value.hpp"

namespace orbinel::tool {

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

}  // namespace orbinel::tool
