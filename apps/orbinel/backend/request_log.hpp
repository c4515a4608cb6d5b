#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "apps/orbinel/backend/reading.hpp"
#include "base/mutex.hpp"

namespace orbinel::tool {

struct ReceivedRequest {
    std::uint64_t id = 0;  // counts from 1, also across `clear`
    double at = 0;         // seconds since 1970
    Incoming request;
    Reading reading;
    int status = 0;      // of the answer
    std::string answer;  // its body; empty for what is no JSON and for more than 4 MB
};

/// Keeps the last requests in memory.
///
/// Threads: any. Order: ids grow in the order of `add`. Bounds: 10,000 requests and 256 MB of what they hold; what came
/// first goes first.
class RequestLog {
public:
    RequestLog();

    /// Fills in the id and the time.
    std::shared_ptr<const ReceivedRequest> add(ReceivedRequest request);

    struct View {
        std::uint64_t run = 0;  // another number after `clear` and in another process: what was read before is gone
        std::vector<std::shared_ptr<const ReceivedRequest>> requests;
    };
    /// How many to give at most; at least one, where there is one.
    struct Limits {
        std::size_t requests = SIZE_MAX;
        std::size_t bytes = SIZE_MAX;
    };
    /// Those with a greater id, oldest first.
    [[nodiscard]] View after(std::uint64_t id, const Limits& limits) const;
    [[nodiscard]] View after(std::uint64_t id) const { return after(id, {}); }

    /// Waits until there is a request with a greater id, or the run is another one, but no longer than `time`. True
    /// when there is news.
    [[nodiscard]] bool waitForNews(std::uint64_t run, std::uint64_t id, std::chrono::milliseconds time) const;
    /// Ends every wait, also those to come.
    void endWaiting();

    void clear();

    /// How many have come since the beginning.
    [[nodiscard]] std::uint64_t count() const;

private:
    mutable Mutex mutex_;
    mutable ConditionVariable changed_;
    bool ended_ ORBINEL_GUARDED_BY(mutex_) = false;
    std::deque<std::shared_ptr<const ReceivedRequest>> requests_ ORBINEL_GUARDED_BY(mutex_);
    std::size_t bytes_ ORBINEL_GUARDED_BY(mutex_) = 0;
    std::uint64_t count_ ORBINEL_GUARDED_BY(mutex_) = 0;
    std::uint64_t run_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel::tool
