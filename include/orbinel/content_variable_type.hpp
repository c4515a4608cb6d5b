#pragma once

#include <cstdint>

namespace orbinel {

/// What an application uses a content variable for; the vendor's panel shows it. Other numbers may be given and are
/// passed on as they are.
enum OrbinelVariableType : std::int32_t {
    OrbinelVariableTypeContent = 0,
    OrbinelVariableTypeElement = 1,
};

}  // namespace orbinel
