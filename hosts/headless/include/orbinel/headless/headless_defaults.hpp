#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "orbinel/export.hpp"
#include "orbinel/platform/defaults.hpp"
#include "orbinel/platform/json.hpp"

namespace orbinel::headless {

/// Stores in memory. Completions run inside the call.
///
/// It outlives a world: given to the next one, it is what the relaunched application finds. An array without queued
/// elements is absent.
class ORBINEL_API HeadlessDefaults final : public platform::Defaults {
public:
    /// The JSON service reads and writes elements of arrays.
    explicit HeadlessDefaults(std::shared_ptr<platform::Json> json);
    ~HeadlessDefaults() override;

    /// Takes every store, those of application groups included, back to its last `synchronize`, as the kill of a
    /// process does. Operations by element stay.
    void dropUnsynchronised();

    [[nodiscard]] std::shared_ptr<platform::DefaultsStore> standard() noexcept override;
    [[nodiscard]] std::shared_ptr<platform::DefaultsStore> suite(std::string_view name) noexcept override;
    [[nodiscard]] std::shared_ptr<platform::DefaultsStore> appGroup(std::string_view name) noexcept override;

    /// Memory has no problems: the handler is never called.
    void setProblemHandler(std::function<void(std::string)> handler) noexcept override;

private:
    struct Stores;

    const std::unique_ptr<Stores> stores_;
};

}  // namespace orbinel::headless
