#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/console.hpp"

namespace orbinel::platform {

/// Hands every line on to another console; derive from it to keep lines.
class ForwardingConsole : public Console {
public:
    explicit ForwardingConsole(std::shared_ptr<Console> target) : target_(std::move(target)) {}

    void writeLine(std::string_view line) noexcept override { target_->writeLine(line); }

protected:
    const std::shared_ptr<Console> target_;
};

}  // namespace orbinel::platform
