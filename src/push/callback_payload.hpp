#pragma once

#include "orbinel/value.hpp"

namespace orbinel {

/// What the application's callback is told of a push that was opened: its payload without the keys that are the
/// library's own. Where the person chose an item of a carousel, only what that item brought.
[[nodiscard]] Dictionary purifyCallbackPayload(const Dictionary& payload, const Dictionary& advancedPushDeeplink);

}  // namespace orbinel
