#include "orbinel/headless/headless_pasteboard.hpp"

namespace orbinel::headless {

HeadlessPasteboard::HeadlessPasteboard() = default;
HeadlessPasteboard::~HeadlessPasteboard() = default;

std::optional<std::string> HeadlessPasteboard::text() const { return text_; }

void HeadlessPasteboard::setText(const std::string& text) noexcept { text_ = text; }

}  // namespace orbinel::headless
