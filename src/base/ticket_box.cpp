#include "base/ticket_box.hpp"

namespace orbinel {

// Tickets are destroyed outside the lock throughout: cancelling may call whoever issued them.

TicketBox::Place TicketBox::open() {
    const MutexLock lock(mutex_);
    ++last_;
    if (!closed_) tickets_.try_emplace(last_);
    return last_;
}

void TicketBox::keep(Place place, platform::Ticket ticket) {
    const MutexLock lock(mutex_);
    const auto slot = tickets_.find(place);
    if (slot == tickets_.end()) {
        // The work has ended, and cancelling it would do nothing; or everything has been cancelled, this too.
        if (!closed_) ticket.detach();
        return;
    }
    slot->second = std::move(ticket);
}

void TicketBox::close(Place place) {
    platform::Ticket ended;
    const MutexLock lock(mutex_);
    const auto slot = tickets_.find(place);
    if (slot == tickets_.end()) return;
    ended = std::move(slot->second);
    ended.detach();
    tickets_.erase(slot);
}

void TicketBox::cancelAll() {
    std::unordered_map<Place, platform::Ticket> cancelled;
    const MutexLock lock(mutex_);
    closed_ = true;
    cancelled.swap(tickets_);
}

}  // namespace orbinel
