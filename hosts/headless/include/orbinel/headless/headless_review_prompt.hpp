#pragma once

#include <cstddef>

#include "orbinel/export.hpp"
#include "orbinel/platform/review_prompt.hpp"

namespace orbinel::headless {

/// Counts the questions, and asks nobody.
///
/// Threads: main.
class ORBINEL_API HeadlessReviewPrompt final : public platform::ReviewPrompt {
public:
    HeadlessReviewPrompt();
    ~HeadlessReviewPrompt() override;

    [[nodiscard]] std::size_t requests() const;

    void requestReview() noexcept override;

private:
    std::size_t requests_ = 0;
};

}  // namespace orbinel::headless
