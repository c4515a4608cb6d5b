#pragma once

#include <string>

#include "apps/orbinel/backend/payload_reader.hpp"

namespace orbinel::tool {

/// What a request says, in a few words for one line: "2 events, 90 s, reason default". However long its texts and lists
/// are, the line stays short.
[[nodiscard]] std::string summariseStart(PayloadReader& payload);
[[nodiscard]] std::string summariseStop(PayloadReader& payload);
[[nodiscard]] std::string summariseIdentity(PayloadReader& payload);
[[nodiscard]] std::string summariseConsent(PayloadReader& payload);
[[nodiscard]] std::string summariseMessageCenter(PayloadReader& payload);
[[nodiscard]] std::string summariseToken(PayloadReader& payload);
[[nodiscard]] std::string summariseLogs(PayloadReader& payload);
[[nodiscard]] std::string summariseWizardDevice(PayloadReader& payload);
[[nodiscard]] std::string summariseFeed(PayloadReader& payload);
[[nodiscard]] std::string summariseNothing(PayloadReader& payload);

}  // namespace orbinel::tool
