#pragma once

#include <cstdint>
#include <vector>

#include "orbinel/export.hpp"
#include "orbinel/platform/haptics.hpp"

namespace orbinel::headless {

/// Keeps what a person would have felt.
///
/// Threads: main.
class ORBINEL_API HeadlessHaptics final : public platform::Haptics {
public:
    HeadlessHaptics();
    ~HeadlessHaptics() override;

    /// The styles of all impacts, in their order. Only those that there are.
    [[nodiscard]] std::vector<std::int32_t> impacts() const;

    void impact(std::int32_t style) noexcept override;

private:
    std::vector<std::int32_t> impacts_;
};

}  // namespace orbinel::headless
