#pragma once

#include <cstdint>

namespace orbinel::platform {

/// What the person feels.
///
/// Threads: main thread.
class Haptics {
public:
    virtual ~Haptics() = default;

    /// One impact: 0 light, 1 medium, 2 heavy, 3 soft, 4 rigid. Any other style, and a device that cannot, does
    /// nothing.
    virtual void impact(std::int32_t style) noexcept = 0;
};

}  // namespace orbinel::platform
