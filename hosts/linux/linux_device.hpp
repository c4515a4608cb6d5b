#pragma once

#include <filesystem>
#include <memory>

#include "orbinel/platform/device.hpp"
#include "orbinel/platform/scheduler.hpp"

namespace orbinel::hosts {

/// The machine, as the kernel and the system's files describe it.
///
/// Facts are read on a background thread, first at the construction, and again when they are asked for and older than
/// a few seconds. Until they have been read once, only what the environment says is known.
class LinuxDevice final : public platform::Device {
public:
    /// The identifier of the vendor is kept in `dataDirectory`.
    LinuxDevice(const std::filesystem::path& dataDirectory, std::shared_ptr<platform::Scheduler> scheduler);

    [[nodiscard]] std::shared_ptr<const platform::DeviceFacts> facts() const noexcept override;
    [[nodiscard]] std::string makeUuid() noexcept override;
    bool renewVendorIdentifier() noexcept override;

private:
    class Mirror;

    const std::shared_ptr<platform::Scheduler> scheduler_;
    const std::shared_ptr<Mirror> mirror_;
};

}  // namespace orbinel::hosts
