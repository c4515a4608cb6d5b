#pragma once

#include <filesystem>

#include "orbinel/platform/secure_items.hpp"

namespace orbinel::hosts {

/// Secrets as files of mode 0600 in a directory of mode 0700, one an item, each replaced as a whole.
class FileSecureItems final : public platform::SecureItems {
public:
    explicit FileSecureItems(std::filesystem::path directory);

    [[nodiscard]] std::optional<std::string> find(std::string_view service,
                                                  std::string_view account) const noexcept override;
    bool store(std::string_view service, std::string_view account, std::string_view data) noexcept override;
    void remove(std::string_view service, std::string_view account) noexcept override;

private:
    [[nodiscard]] std::filesystem::path pathOf(std::string_view service, std::string_view account) const;

    const std::filesystem::path directory_;
};

}  // namespace orbinel::hosts
