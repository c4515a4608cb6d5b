#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <variant>

#include "apps/orbinel/play/arguments.hpp"
#include "apps/orbinel/play/trace.hpp"
#include "orbinel/event.hpp"
#include "orbinel/value.hpp"

namespace orbinel::tool {

/// What callbacks are registered for. It does nothing but live.
struct Target {};

/// What an operation gives, and what a scenario can keep under a name.
enum class ThingKind { nothing, text, boolean, dictionary, event, target };

/// Nothing, a value, or an object (empty once it has gone).
using Thing = std::variant<std::monostate, Value, std::shared_ptr<OrbinelEvent>, std::shared_ptr<Target>>;

/// An argument when its operation is called. An absent target is an empty pointer.
using CallArgument = std::variant<Value, CallbackName, std::shared_ptr<Target>>;

enum class ArgumentKind {
    text,  // may be absent
    int32,
    number,
    boolean,
    date,  // may be absent
    array,
    dictionary,
    anyDictionary,  // may be absent
    any,
    callback,
    target,  // may be absent
};

/// One operation of the library as scenarios call it.
struct Operation {
    std::string_view name;
    ThingKind receiver;  // `nothing` for those of the facade
    std::span<const ArgumentKind> arguments;
    ThingKind result;

    /// `event` is the receiver, where that is one. Arguments are of the kinds above; calls of a callback go to the
    /// trace, which must outlive the library.
    Thing (*call)(std::span<const CallArgument> arguments, OrbinelEvent* event, Trace& trace);
};

/// Throws `Unusable` where there is no such operation for the receiver.
[[nodiscard]] const Operation& findOperation(std::string_view name, ThingKind receiver);

/// Throws `Unusable` where the argument cannot be taken. `kept` is the kind of what a reference refers to.
void checkArgument(const Argument& argument, ThingKind kept, ArgumentKind wanted, std::string_view what);

}  // namespace orbinel::tool
