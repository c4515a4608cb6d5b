#pragma once

#include <memory>

#include "orbinel/export.hpp"
#include "orbinel/platform/application.hpp"

namespace orbinel::headless {

/// The application as a test says it is. At first it is upright, its background may suspend the process, and its
/// bundle is version 1.0.0 of "com.example.headless" in English.
class ORBINEL_API HeadlessApplication final : public platform::Application {
public:
    HeadlessApplication();
    ~HeadlessApplication() override;

    void setBackgroundMaySuspend(bool maySuspend);
    void setPortrait(bool portrait);
    void setBundle(platform::ApplicationBundle bundle);

    [[nodiscard]] bool backgroundMaySuspend() const noexcept override;
    [[nodiscard]] bool isPortrait() const noexcept override;
    [[nodiscard]] platform::ApplicationBundle bundle() const noexcept override;

private:
    struct State;

    const std::unique_ptr<State> state_;
};

}  // namespace orbinel::headless
