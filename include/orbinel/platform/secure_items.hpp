#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orbinel::platform {

/// Small secrets that outlive the application's installation where the platform can do that.
///
/// Threads: callable from any thread. Failure: as documented; nothing is thrown.
class SecureItems {
public:
    virtual ~SecureItems() = default;

    /// The data stored for the service and account (any texts); nothing where there is none or it cannot be read.
    [[nodiscard]] virtual std::optional<std::string> find(std::string_view service,
                                                          std::string_view account) const noexcept = 0;

    /// Replaces the data of the service and account as a whole: a reader sees the old or the new, never a mixture.
    /// False where it could not be written.
    virtual bool store(std::string_view service, std::string_view account, std::string_view data) noexcept = 0;

    /// Removes the item where there is one.
    virtual void remove(std::string_view service, std::string_view account) noexcept = 0;
};

}  // namespace orbinel::platform
