#pragma once

#include <cstdint>
#include <string>

namespace orbinel {

// Why a message was closed, and what was clicked in it. A button's tag is the reason, except for the close button's.
inline constexpr std::int32_t kBANNERCLICKED = 6;
inline constexpr std::int32_t kBANNERDEEPLINKDISMISS = 7;  // known to the backend; nothing here closes so
inline constexpr std::int32_t inappCloseReasonKeyboardDismissType = 7;
inline constexpr std::int32_t kDISSMISSTYPECONTROL = 8;
inline constexpr std::int32_t kWEBVIEWCLICKED = 9;
inline constexpr std::int32_t kCloseButtonDismissValue = 6;
inline constexpr std::int32_t kCloseButtonDismissControlTag = 13;

/// A button of a message that was pressed: its tag, and the fields in which a native button carries its action.
struct InappButton {
    std::int32_t tag = 0;
    std::string accessibilityHint;   // the action's type, as an integer
    std::string accessibilityLabel;  // what the action is about: a text or a URL
    std::string accessibilityValue;
    std::string accessibilityLanguage;    // JSON: custom attributes to set
    std::string accessibilityIdentifier;  // JSON: a payload for the application
};

}  // namespace orbinel
