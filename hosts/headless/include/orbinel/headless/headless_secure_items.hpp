#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "orbinel/export.hpp"
#include "orbinel/platform/secure_items.hpp"

namespace orbinel::headless {

/// Secrets in memory. Given to the next world, they are what the relaunched application finds.
class ORBINEL_API HeadlessSecureItems final : public platform::SecureItems {
public:
    HeadlessSecureItems();
    ~HeadlessSecureItems() override;

    [[nodiscard]] std::optional<std::string> find(std::string_view service,
                                                  std::string_view account) const noexcept override;
    bool store(std::string_view service, std::string_view account, std::string_view data) noexcept override;
    void remove(std::string_view service, std::string_view account) noexcept override;

private:
    struct Items;

    const std::unique_ptr<Items> items_;
};

}  // namespace orbinel::headless
