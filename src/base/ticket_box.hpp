#pragma once

#include <cstdint>
#include <unordered_map>

#include "base/mutex.hpp"
#include "orbinel/platform/ticket.hpp"

namespace orbinel {

/// Keeps the tickets of work that ends by itself, so that all of it can be cancelled at once.
///
/// Work may end before its ticket has been handed in: `open` a place first, then start the work, then `keep` its
/// ticket; the work `close`s the place when it ends. Threads: any.
class TicketBox {
public:
    using Place = std::uint64_t;

    [[nodiscard]] Place open();
    void keep(Place place, platform::Ticket ticket);
    void close(Place place);

    /// Cancels everything; places opened later are cancelled as soon as their ticket is handed in.
    void cancelAll();

private:
    Mutex mutex_;
    std::unordered_map<Place, platform::Ticket> tickets_ ORBINEL_GUARDED_BY(mutex_);
    Place last_ ORBINEL_GUARDED_BY(mutex_) = 0;
    bool closed_ ORBINEL_GUARDED_BY(mutex_) = false;
};

}  // namespace orbinel
