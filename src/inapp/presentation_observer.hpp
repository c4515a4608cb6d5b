#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orbinel/platform/layout.hpp"

namespace orbinel {

/// A message as it stands at one moment.
struct PresentedView {
    std::string url;
    std::string inappId;
    platform::Rectangle frame;  // in the window
};

/// Watches what is presented, for who writes it down. Main thread.
class PresentationObserver {
public:
    virtual ~PresentationObserver() = default;
    virtual void built(const PresentedView& view) = 0;
    virtual void shown(const PresentedView& view) = 0;  // its fade has begun
    virtual void moved(const PresentedView& view) = 0;  // and has arrived
    virtual void removed(const PresentedView& view) = 0;
    virtual void scriptEvaluated(std::string_view script) = 0;
    virtual void browserOpened(std::string_view url) = 0;
};

}  // namespace orbinel
