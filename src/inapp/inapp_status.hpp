#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "base/reports.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// What befell a message, step by step: each has a fixed text in the diagnostic log. The numbers are the texts' places.
enum class InappStatus {
    notFound = 0,
    frequencyCapped = 1,
    selected = 2,
    otherOnScreen = 3,
    requestFailed = 4,
    orientationNotPortrait = 5,
    waitingForOther = 6,
    urlInvalid = 7,
    loadRequested = 8,
    webViewInitialised = 9,
    loading = 10,
    subviewAdded = 11,
    drawn = 12,
    removedFromSuperview = 13,
    webViewReleased = 14,
    shakeDetected = 15,
};

/// The text of a status; "Unknown log" for a number that is none.
[[nodiscard]] std::string_view getReason(int index) noexcept;

/// Writes a status into the diagnostic log. `attributes` is only called when somebody takes the record.
template <std::invocable Attributes>
void logStatus(Reports& reports, InappStatus status, Attributes&& attributes,
               LogLevel level = LogLevel::error) noexcept {
    reports.log(LogType::inapp, level, getReason(static_cast<int>(status)), std::forward<Attributes>(attributes));
}
inline void logStatus(Reports& reports, InappStatus status, LogLevel level = LogLevel::error) noexcept {
    reports.log(LogType::inapp, level, getReason(static_cast<int>(status)));
}

/// The status of a message whose page could not be had, with the reason.
void logRequestFailed(Reports& reports, const Dictionary& inapp, const std::string& reason) noexcept;

/// A message, or what was to become one, is taken out of the window. The reason is a literal.
void logRemoval(Reports& reports, const char* reason) noexcept;

}  // namespace orbinel
