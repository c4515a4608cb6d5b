#pragma once

#include <string_view>

#include "apps/orbinel/play/operation.hpp"

namespace orbinel::tool {

/// Throws `Unusable` where an operation that wants this kind cannot take the argument. `kept` is the kind of what a
/// reference refers to; `what` names the argument in the sentence.
void checkArgument(const Argument& argument, ThingKind kept, ArgumentKind wanted, std::string_view what);

}  // namespace orbinel::tool
