#pragma once

#include <memory>

#include "apps/orbinel/play/play_interface.hpp"

namespace orbinel::tool {

/// A window on the display. GTK comes with a library of its own that is loaded here, so that the tool does without
/// where nobody wants a window. Throws `Unusable` where the library or the display is missing.
[[nodiscard]] std::unique_ptr<PlayInterface> makeGtkInterface(const PlayWait& wait);

}  // namespace orbinel::tool
