#pragma once

#include <cstdint>

namespace orbinel {

// Kinds of a message ("content.type").
inline constexpr std::int32_t kCONTROLGROUP = -1;
inline constexpr std::int32_t kCUSTOMSREEN = 4;

/// How the current message is to be built, beside what its record says.
struct InappLayout {
    std::int32_t type = 0;
    std::int32_t layoutStyle = 0;
    std::int32_t buttonLayout = 0;
    std::int32_t delay = 0;  // seconds
    std::int32_t position = 0;
    bool notFullHeight = false;
};

}  // namespace orbinel
