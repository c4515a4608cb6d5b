#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <thread>
#include <vector>

#include "apps/orbinel/play/expectation.hpp"
#include "base/mutex.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "orbinel/value.hpp"

namespace orbinel::tool {

/// What happens during a play: one entry a line, and all of them in memory for expectations.
///
/// Threads: any. Order: entries of one thread keep theirs. While an action (one operation or notification of the
/// scenario) runs, entries of other threads than the acting one wait for its end, so that the same scenario leaves the
/// same trace however the threads race; their "at" is when they happened.
class Trace {
public:
    enum class Form { lines, pretty };

    Trace(const platform::Scheduler& clock, std::ostream& out, Form form);

    /// Writes an entry; "at" is put in front.
    void write(Dictionary entry);

    /// The same for what goes over the network: as if from another thread whoever calls, since which thread of the
    /// library comes to send a request is a matter of chance.
    void writeNetwork(Dictionary entry);

    /// The time of being: until its end, the calling thread is the acting one. One at a time.
    class Action {
    public:
        explicit Action(Trace& trace);
        ~Action();
        Action(const Action&) = delete;
        Action& operator=(const Action&) = delete;

    private:
        Trace& trace_;
    };

    /// From here on counting begins anew.
    void mark();

    /// How many entries since the mark match.
    [[nodiscard]] std::size_t count(const EntryPattern& pattern) const;

private:
    enum class Source { caller, network };

    void add(const Dictionary& entry, Source source);
    void put(Value entry) ORBINEL_REQUIRES(mutex_);

    const platform::Scheduler& clock_;
    const double start_;  // seconds since 1970
    const Form form_;

    mutable Mutex mutex_;
    std::ostream& out_ ORBINEL_GUARDED_BY(mutex_);
    std::vector<Value> entries_ ORBINEL_GUARDED_BY(mutex_);
    std::size_t mark_ ORBINEL_GUARDED_BY(mutex_) = 0;
    std::thread::id acting_ ORBINEL_GUARDED_BY(mutex_);  // of no thread while there is no action
    std::vector<Value> waiting_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel::tool
