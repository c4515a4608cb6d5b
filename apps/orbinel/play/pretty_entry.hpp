#pragma once

#include <string>

#include "orbinel/value.hpp"

namespace orbinel::tool {

/// A trace entry for people: one line, or several, each with its end. `start` is the play's (seconds since 1970), from
/// which times are counted.
[[nodiscard]] std::string prettyEntry(const Dictionary& entry, double start);

}  // namespace orbinel::tool
