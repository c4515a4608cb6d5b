#include "orbinel/headless/headless_review_prompt.hpp"

namespace orbinel::headless {

HeadlessReviewPrompt::HeadlessReviewPrompt() = default;
HeadlessReviewPrompt::~HeadlessReviewPrompt() = default;

std::size_t HeadlessReviewPrompt::requests() const { return requests_; }

void HeadlessReviewPrompt::requestReview() noexcept { ++requests_; }

}  // namespace orbinel::headless
