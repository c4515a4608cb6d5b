#pragma once

#include <utility>

#include "base/lifetime.hpp"
#include "orbinel/platform/scheduler.hpp"

namespace orbinel {

/// Runs the task on the main thread: at once where that is the calling thread, else on the main queue while the library
/// runs.
template <typename Task>
void runOnMain(platform::Scheduler& scheduler, const Lifetime& lifetime, Task task) {
    if (scheduler.isMain()) return task();
    scheduler.postMain(lifetime.whileAlive(std::move(task)));
}

}  // namespace orbinel
