#pragma once

#include <filesystem>

namespace orbinel::tool {

/// Where one of the examples is that come with the tool; `example` begins with "examples/". Below the directory that
/// this is run in where it is there, else as installed, else of the source tree.
[[nodiscard]] std::filesystem::path findExample(const std::filesystem::path& example);

}  // namespace orbinel::tool
