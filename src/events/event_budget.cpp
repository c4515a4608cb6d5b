#include "events/event_budget.hpp"

#include <limits>

namespace orbinel {

std::int32_t EventBudget::incrementTotalEventCount() noexcept {
    auto count = count_.load();
    do {
        if (count == std::numeric_limits<std::int32_t>::max()) return count;
    } while (!count_.compare_exchange_weak(count, count + 1));
    return count + 1;
}

}  // namespace orbinel
