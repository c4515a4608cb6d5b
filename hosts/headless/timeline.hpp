#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "orbinel/platform/scheduler.hpp"

namespace orbinel::headless {

using Microseconds = std::chrono::microseconds;

enum class Queue { main, global };

struct Work {
    Work(Queue q, platform::Task t, Microseconds i = Microseconds{0}) : queue(q), task(std::move(t)), interval(i) {}

    const Queue queue;
    const platform::Task task;
    const Microseconds interval;                     // zero: runs once
    std::pair<Microseconds, std::uint64_t> place{};  // the timeline's: when it is due, and its turn among equals
};

/// Work in the order in which it falls due. Not safe for threads: its owner locks.
class Timeline {
public:
    void add(const std::shared_ptr<Work>& work, Microseconds due) {
        work->place = {due, ++lastTurn_};
        works_.emplace(work->place, work);
    }

    /// Does nothing where the work does not stand here.
    void remove(const Work& work) {
        const auto found = works_.find(work.place);
        if (found != works_.end() && found->second.get() == &work) works_.erase(found);
    }

    [[nodiscard]] std::optional<Microseconds> firstDue() const {
        return works_.empty() ? std::nullopt : std::optional(works_.begin()->first.first);
    }

    /// The first work. Repeated work is put back at its next tick after now, before it runs, so that it can be removed
    /// while it runs.
    [[nodiscard]] std::shared_ptr<Work> takeFirst(Microseconds now) {
        auto work = works_.extract(works_.begin()).mapped();
        if (work->interval > Microseconds{0}) {
            const auto due = work->place.first;
            add(work, due + ((now - due) / work->interval + 1) * work->interval);
        }
        return work;
    }

private:
    std::map<std::pair<Microseconds, std::uint64_t>, std::shared_ptr<Work>> works_;
    std::uint64_t lastTurn_ = 0;
};

}  // namespace orbinel::headless
