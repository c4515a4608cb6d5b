#pragma once

#include <cstdio>
#include <string>

#include "orbinel/platform/console.hpp"

namespace orbinel::hosts {

/// Lines on the standard error stream.
class StderrConsole final : public platform::Console {
public:
    void writeLine(std::string_view line) noexcept override {
        // One call a line: the stream's own lock then keeps lines of different threads apart.
        const auto whole = std::string(line) + '\n';
        static_cast<void>(std::fwrite(whole.data(), 1, whole.size(), stderr));
    }
};

}  // namespace orbinel::hosts
