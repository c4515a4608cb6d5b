#pragma once

namespace orbinel::platform {

/// The platform's own question for a rating of the application.
///
/// Threads: main thread.
class ReviewPrompt {
public:
    virtual ~ReviewPrompt() = default;

    /// Asks, unless the platform finds that the person has been asked often enough. Nobody learns the outcome.
    virtual void requestReview() noexcept = 0;
};

}  // namespace orbinel::platform
