#pragma once

#include <string_view>

#include "orbinel/value.hpp"

namespace orbinel {
class World;
}

namespace orbinel::tool {

class RememberingSecureItems;

/// Looks at stored or gathered state, changing nothing.
using Inspection = Value (*)(World& world, const RememberingSecureItems& secureItems);

/// Throws `Unusable` where there is nothing of that name to look at.
[[nodiscard]] Inspection findInspection(std::string_view name);

}  // namespace orbinel::tool
