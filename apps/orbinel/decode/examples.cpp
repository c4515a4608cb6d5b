#include "apps/orbinel/decode/examples.hpp"

#include <system_error>

namespace orbinel::tool {

std::filesystem::path findExample(const std::filesystem::path& example) {
    std::error_code ignored;
    const auto tool = std::filesystem::read_symlink("/proc/self/exe", ignored);
    for (const auto& found : {example, tool.parent_path().parent_path() / "share/orbinel" / example}) {
        if (std::filesystem::exists(found, ignored)) return found;
    }
    return std::filesystem::path(ORBINEL_SOURCE_DIR) / example;
}

}  // namespace orbinel::tool
