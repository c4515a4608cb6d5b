#pragma once

#include <string>

namespace orbinel::tool {

/// A random identifier in the form of RFC 9562, lower case.
[[nodiscard]] std::string freshUuid();

}  // namespace orbinel::tool
