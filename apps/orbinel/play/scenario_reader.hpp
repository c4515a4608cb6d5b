#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "apps/orbinel/play/fields.hpp"
#include "apps/orbinel/play/scenario.hpp"

namespace orbinel::tool {

/// Reads the text of a scenario file and checks all of it, whatever the text is. `${endpoint}` in its texts becomes
/// the endpoint. Otherwise one line says what is wrong and where. What needs another interface is wrong, too.
[[nodiscard]] std::variant<Scenario, Unusable> readScenario(std::string_view text,
                                                            const std::optional<std::string>& endpoint,
                                                            Interface interface = Interface::headless) noexcept;

}  // namespace orbinel::tool
