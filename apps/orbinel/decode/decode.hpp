#pragma once

#include <span>
#include <string>

namespace orbinel::tool {

/// `orbinel decode`: unscrambles a captured envelope, or makes one. Returns the process's exit status: 0; 1 for input
/// that cannot be decoded; 2 for wrong usage.
int runDecode(std::span<const std::string> arguments);

}  // namespace orbinel::tool
