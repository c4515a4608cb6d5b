#pragma once

#include <string>

#include "orbinel/platform/json.hpp"

namespace orbinel {

/// Names of the application's fonts; empty where it has set none.
struct CustomFonts {
    std::string regular;
    std::string bold;
    std::string italic;
};

/// The script that runs in a page before its own: gives it the fonts as the CSS custom properties
/// --orbinel-regular-font, --orbinel-bold-font and --orbinel-italic-font, and, while debugging, has it post what it
/// writes to its console. Empty where there is nothing to do.
[[nodiscard]] std::string pageStartScript(const platform::Json& json, const CustomFonts& fonts, bool debugging);

}  // namespace orbinel
