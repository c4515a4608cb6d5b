#pragma once

#include <functional>
#include <span>
#include <string_view>
#include <variant>
#include <vector>

#include "apps/orbinel/play/arguments.hpp"
#include "apps/orbinel/play/things.hpp"
#include "apps/orbinel/play/trace.hpp"
#include "orbinel/value.hpp"

namespace orbinel::tool {

/// An argument when its operation is called: a value, a callback, what a reference stands for, or a list of those.
using CallArgument = std::variant<Value, CallbackName, Thing, std::vector<Thing>>;

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
    anyCallback,   // may be absent
    target,        // may be absent
    identifiers,   // may be absent
    product,       // may be absent
    products,      // a list of those
    userActivity,  // may be absent
};

/// One operation of the library as scenarios call it.
struct Operation {
    std::string_view name;
    std::vector<ArgumentKind> arguments;
    ThingKind result;

    /// `receiver` is nothing for operations of the facade. Arguments are of the kinds above; calls of a callback go to
    /// the trace, which must outlive the library.
    std::function<Thing(const Thing& receiver, std::span<const CallArgument> arguments, Trace& trace)> call;
};

/// Throws `Unusable` where there is no such operation for the receiver (`nothing` stands for the facade).
[[nodiscard]] const Operation& findOperation(std::string_view name, ThingKind receiver);

}  // namespace orbinel::tool
