#pragma once

#include <utility>

#include "orbinel/platform/application.hpp"

namespace orbinel::hosts {

/// An application without a window: it stands upright, and what its package says was told at the start.
class LinuxApplication final : public platform::Application {
public:
    LinuxApplication(platform::ApplicationBundle bundle, bool backgroundMaySuspend)
        : bundle_(std::move(bundle)), backgroundMaySuspend_(backgroundMaySuspend) {}

    [[nodiscard]] bool backgroundMaySuspend() const noexcept override { return backgroundMaySuspend_; }
    [[nodiscard]] bool isPortrait() const noexcept override { return true; }
    [[nodiscard]] platform::ApplicationBundle bundle() const noexcept override { return bundle_; }

private:
    const platform::ApplicationBundle bundle_;
    const bool backgroundMaySuspend_;
};

}  // namespace orbinel::hosts
