#pragma once

#include <span>
#include <string>

namespace orbinel::tool {

/// `orbinel backend`: serves until SIGINT or SIGTERM. Returns the process's exit status: 0; 1 when the port cannot be
/// had; 2 for wrong usage.
///
/// Threads: call it from the only thread of the process, since it takes over these two signals.
int runBackend(std::span<const std::string> arguments);

}  // namespace orbinel::tool
