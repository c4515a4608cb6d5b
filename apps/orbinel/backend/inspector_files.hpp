#pragma once

#include <string_view>

namespace orbinel::tool {

/// A file of the inspector page, taken into the program by the build.
struct InspectorFile {
    std::string_view path;  // at which it is served
    std::string_view type;
    std::string_view text;
};

/// nullptr where there is none at the path. The page itself is at "/".
[[nodiscard]] const InspectorFile* inspectorFile(std::string_view path);

}  // namespace orbinel::tool
