#pragma once

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "base/mutex.hpp"

namespace orbinel::hosts {

/// Hands sentences about problems to a handler; those that come before there is one are kept for it (at most 100).
///
/// Threads: callable from any thread. Sentences are handed over one at a time; the handler may report and may replace
/// itself.
/// Ending: once `setHandler` has returned, the old handler is not running, unless it is the old handler that called.
class ProblemReports {
public:
    using Handler = std::function<void(std::string)>;

    void report(std::string sentence);
    void setHandler(Handler handler);

private:
    void deliver();

    Mutex mutex_;
    ConditionVariable changed_;
    std::shared_ptr<const Handler> handler_ ORBINEL_GUARDED_BY(mutex_);
    std::vector<std::string> waiting_ ORBINEL_GUARDED_BY(mutex_);
    std::thread::id deliverer_ ORBINEL_GUARDED_BY(mutex_);  // the thread that runs the handler; none by default
};

}  // namespace orbinel::hosts
