#pragma once

#include <string>

namespace orbinel::platform {

/// The general pasteboard, which all applications share.
///
/// Threads: main thread.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Replaces what is on it. UTF-8.
    virtual void setText(const std::string& text) noexcept = 0;
};

}  // namespace orbinel::platform
