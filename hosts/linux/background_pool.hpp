#pragma once

#include <deque>
#include <memory>
#include <thread>
#include <vector>

#include "base/mutex.hpp"
#include "orbinel/platform/scheduler.hpp"

namespace orbinel::hosts {

/// Two threads for background work, started as work arrives.
///
/// Threads: callable from any thread, also from its own tasks.
class BackgroundPool {
public:
    BackgroundPool() = default;
    ~BackgroundPool() { close(); }
    BackgroundPool(const BackgroundPool&) = delete;
    BackgroundPool& operator=(const BackgroundPool&) = delete;

    void post(platform::Task task);

    /// Drops what waits and takes nothing more; waits for the tasks that run, but for the one that calls.
    void close();

private:
    struct State;

    static void work(const std::shared_ptr<State>& state);

    const std::shared_ptr<State> state_ = makeState();
    static std::shared_ptr<State> makeState();
};

}  // namespace orbinel::hosts
