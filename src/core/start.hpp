#pragma once

#include <functional>
#include <string_view>

#include "orbinel/platform/services.hpp"

namespace orbinel {

/// Begins a sentence of `startOver`.
inline constexpr std::string_view startName = "orbinel::start: ";

/// Makes the library over the services. Where that is refused, `refuse` is told in one sentence, and false returned.
bool startOver(platform::Services services, const std::function<void(std::string_view sentence)>& refuse) noexcept;

}  // namespace orbinel
