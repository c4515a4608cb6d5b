#pragma once

#include <string_view>

namespace orbinel::platform {

/// Where a developer reads along.
///
/// Threads: callable from any thread; lines of different threads are not mixed.
class Console {
public:
    virtual ~Console() = default;

    /// Writes one line; the line itself holds no line break.
    virtual void writeLine(std::string_view line) noexcept = 0;
};

}  // namespace orbinel::platform
