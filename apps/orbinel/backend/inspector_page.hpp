#pragma once

namespace orbinel::tool {

/// The page that `GET /` answers: one self-contained HTML document, taken into the program by the build.
[[nodiscard]] const char* inspectorPage();

}  // namespace orbinel::tool
