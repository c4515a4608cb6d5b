#pragma once

#include <optional>
#include <string>

#include "orbinel/export.hpp"
#include "orbinel/platform/pasteboard.hpp"

namespace orbinel::headless {

/// A pasteboard that only a test reads. Nothing is on it at first.
///
/// Threads: main.
class ORBINEL_API HeadlessPasteboard final : public platform::Pasteboard {
public:
    HeadlessPasteboard();
    ~HeadlessPasteboard() override;

    [[nodiscard]] std::optional<std::string> text() const;

    void setText(const std::string& text) noexcept override;

private:
    std::optional<std::string> text_;
};

}  // namespace orbinel::headless
