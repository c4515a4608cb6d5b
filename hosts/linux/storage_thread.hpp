#pragma once

#include <functional>
#include <memory>

namespace orbinel::hosts {

/// Runs jobs one at a time, in order, on one background thread.
///
/// Threads: callable from any thread, also from a job.
/// Ending: `end` runs what has been posted and waits for it, unless a job calls. What is posted later runs, still one
/// at a time and in order, inside `post` or on the thread that is at it already.
class StorageThread {
public:
    using Job = std::function<void()>;

    StorageThread();
    ~StorageThread() { end(); }
    StorageThread(const StorageThread&) = delete;
    StorageThread& operator=(const StorageThread&) = delete;

    void post(Job job);

    /// Whether a job calls.
    [[nodiscard]] bool isCurrent() const;

    /// Returns once every job posted so far has run; at once where a job calls.
    void wait();

    void end();

private:
    struct State;

    static void runAll(State& state);

    const std::shared_ptr<State> state_;
};

}  // namespace orbinel::hosts
