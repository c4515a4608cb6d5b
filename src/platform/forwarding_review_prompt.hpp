#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/review_prompt.hpp"

namespace orbinel::platform {

/// Hands every call on to another review prompt; derive from it to change one method.
class ForwardingReviewPrompt : public ReviewPrompt {
public:
    explicit ForwardingReviewPrompt(std::shared_ptr<ReviewPrompt> target) : target_(std::move(target)) {}

    void requestReview() noexcept override { target_->requestReview(); }

protected:
    const std::shared_ptr<ReviewPrompt> target_;
};

}  // namespace orbinel::platform
