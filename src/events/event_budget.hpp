#pragma once

#include <atomic>
#include <cstdint>
#include <string_view>

namespace orbinel {

inline constexpr std::string_view INAPP_SEEN = "inapp_seen";
inline constexpr std::string_view PUSH_SESSION = "push_session";
inline constexpr std::string_view CONFIRMATION_PAGE_VIEW = "confirmation_page_view";

/// How many ordinary events one session record may take.
inline constexpr std::int32_t MAX_EVENT_COUNT_PER_SESSION = 100;

/// Keeps an application that tags events in a loop from flooding the session record.
///
/// Threads: any.
class EventBudget {
public:
    /// Events that the library itself relies on: never counted, never refused. Letter case counts.
    [[nodiscard]] static constexpr bool isThisVIPEvent(std::string_view name) noexcept {
        return name == INAPP_SEEN || name == PUSH_SESSION || name == CONFIRMATION_PAGE_VIEW;
    }

    /// Counts the event and answers whether it is beyond the budget. The counter goes on while events are refused.
    [[nodiscard]] bool isEventThrottled(std::string_view name) noexcept {
        return !isThisVIPEvent(name) && incrementTotalEventCount() > MAX_EVENT_COUNT_PER_SESSION;
    }

    /// The new count; held at the largest number rather than overflowing.
    std::int32_t incrementTotalEventCount() noexcept;
    [[nodiscard]] std::int32_t getTotalEventCount() const noexcept { return count_.load(); }
    void clearTotalEventCount() noexcept { count_.store(0); }

private:
    std::atomic<std::int32_t> count_{0};
};

}  // namespace orbinel
