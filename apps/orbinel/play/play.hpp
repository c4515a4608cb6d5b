#pragma once

#include <span>
#include <string>

namespace orbinel::tool {

/// `orbinel play`: drives the library as a scenario file says and writes what happens to stdout.
int runPlay(std::span<const std::string> arguments);

}  // namespace orbinel::tool
