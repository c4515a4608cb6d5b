#pragma once

#include <cstdint>

namespace orbinel {

/// By these the views of this folder are found.
inline constexpr std::int32_t kINAPPVIEWTAG = 230922;
inline constexpr std::int32_t kBUTTONVIEWTAG = 230923;
inline constexpr std::int32_t kOVERLAYTAG = 230924;
inline constexpr std::int32_t kPUSHBROWSERVIEWTAG = 19191;
inline constexpr std::int32_t kPUSHBROWSERCLOSEBUTTONVIEWTAG = 191912;

/// Of fading and moving, in seconds.
inline constexpr double kANIMATIONDURATION = 0.3;

}  // namespace orbinel
