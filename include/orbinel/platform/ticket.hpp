#pragma once

#include <functional>
#include <utility>

namespace orbinel::platform {

/// Owns one piece of work that has been started and may still be cancelled.
///
/// Destroying the ticket cancels the work; once the work has run, or after `detach`, destroying it does nothing.
/// A ticket may be destroyed on any thread, also inside the very work that it stands for.
class Ticket {
public:
    Ticket() = default;
    explicit Ticket(std::function<void()> cancel) : cancel_(std::move(cancel)) {}
    Ticket(Ticket&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}
    Ticket& operator=(Ticket&& other) noexcept {
        if (this != &other) {
            cancel();
            cancel_ = std::exchange(other.cancel_, nullptr);
        }
        return *this;
    }
    ~Ticket() { cancel(); }

    void cancel() noexcept {
        if (auto cancel = std::exchange(cancel_, nullptr)) cancel();
    }

    /// Leaves the work to itself: it runs to its end whatever becomes of the ticket.
    void detach() noexcept { cancel_ = nullptr; }

private:
    std::function<void()> cancel_;  // must not throw
};

}  // namespace orbinel::platform
