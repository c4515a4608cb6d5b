#pragma once

#include "session/collaborators.hpp"

namespace orbinel {

/// The in-app message on screen, as far as a login is concerned with it. May not be called with a lock held.
class DisplayedInapp {
public:
    virtual ~DisplayedInapp() = default;
    /// Removes the message, where there is one, on the main queue and calls the completion afterwards.
    virtual void removeInappWithCompletionHandler(Completion completion) = 0;
};

}  // namespace orbinel
