#include "orbinel/headless/headless_haptics.hpp"

namespace orbinel::headless {

namespace {

constexpr std::int32_t lastStyle = 4;

}  // namespace

HeadlessHaptics::HeadlessHaptics() = default;
HeadlessHaptics::~HeadlessHaptics() = default;

std::vector<std::int32_t> HeadlessHaptics::impacts() const { return impacts_; }

void HeadlessHaptics::impact(std::int32_t style) noexcept {
    if (style >= 0 && style <= lastStyle) impacts_.push_back(style);
}

}  // namespace orbinel::headless
