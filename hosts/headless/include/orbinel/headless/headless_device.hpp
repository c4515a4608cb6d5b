#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "orbinel/export.hpp"
#include "orbinel/platform/device.hpp"

namespace orbinel::headless {

/// A phone as a test says it is; at first a plausible one on a wireless network, in UTC.
class ORBINEL_API HeadlessDevice final : public platform::Device {
public:
    /// The same seed gives the same UUIDs in the same order, and other seeds give others.
    explicit HeadlessDevice(std::uint64_t seed = 1);
    ~HeadlessDevice() override;

    /// Changes some facts, all at the same moment. The function must not ask this device.
    void change(const std::function<void(platform::DeviceFacts&)>& change);

    [[nodiscard]] std::shared_ptr<const platform::DeviceFacts> facts() const noexcept override;
    [[nodiscard]] std::string makeUuid() noexcept override;

private:
    struct State;

    const std::unique_ptr<State> state_;
};

}  // namespace orbinel::headless
