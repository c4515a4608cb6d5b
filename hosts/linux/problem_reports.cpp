#include "hosts/linux/problem_reports.hpp"

#include <utility>

namespace orbinel::hosts {

namespace {

constexpr std::size_t maximumWaiting = 100;

}  // namespace

void ProblemReports::report(std::string sentence) {
    {
        MutexLock lock(mutex_);
        if (waiting_.size() >= maximumWaiting) return;
        waiting_.push_back(std::move(sentence));
    }
    deliver();
}

void ProblemReports::setHandler(Handler handler) {
    auto next = handler ? std::make_shared<const Handler>(std::move(handler)) : nullptr;
    {
        MutexLock lock(mutex_);
        handler_.swap(next);
        while (deliverer_ != std::thread::id() && deliverer_ != std::this_thread::get_id()) changed_.wait(mutex_);
    }
    deliver();
}

void ProblemReports::deliver() {
    for (;;) {
        std::shared_ptr<const Handler> handler;
        std::string sentence;
        {
            MutexLock lock(mutex_);
            // Whoever delivers already comes round to what has just been added.
            if (!handler_ || waiting_.empty() || deliverer_ != std::thread::id()) return;
            deliverer_ = std::this_thread::get_id();
            handler = handler_;
            sentence = std::move(waiting_.front());
            waiting_.erase(waiting_.begin());
        }
        (*handler)(std::move(sentence));
        handler.reset();
        {
            MutexLock lock(mutex_);
            deliverer_ = {};
        }
        changed_.notifyAll();
    }
}

}  // namespace orbinel::hosts
