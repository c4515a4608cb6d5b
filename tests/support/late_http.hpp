#pragma once

#include <algorithm>
#include <deque>
#include <memory>
#include <string>
#include <utility>

#include "base/mutex.hpp"
#include "platform/forwarding_http.hpp"

namespace orbinel::testing {

/// Keeps back the answers of chosen requests until a test delivers them.
class LateHttp final : public platform::ForwardingHttp {
public:
    using ForwardingHttp::ForwardingHttp;

    /// Keeps back the answer to each of the next `count` requests to a URL that ends in `path`.
    void keepBack(const std::string& path, int count = 1) {
        const MutexLock lock(mutex_);
        for (int i = 0; i < count; ++i) paths_.push_back(path);
    }

    /// Delivers the answer that came first of those kept back.
    void deliver() {
        auto kept = [this] {
            const MutexLock lock(mutex_);
            auto first = std::move(kept_.at(0));
            kept_.pop_front();
            return first;
        }();
        kept.completion(std::move(kept.outcome));
    }

    /// Reverses the order in which they are delivered.
    void turnAround() {
        const MutexLock lock(mutex_);
        std::reverse(kept_.begin(), kept_.end());
    }

    platform::Ticket send(platform::HttpRequest request, platform::HttpCompletion completion) noexcept override {
        if (!take(request.url)) return target_->send(std::move(request), std::move(completion));
        return target_->send(std::move(request), [this, completion](platform::HttpOutcome outcome) {
            const MutexLock lock(mutex_);
            kept_.push_back({completion, std::move(outcome)});
        });
    }

private:
    struct Kept {
        platform::HttpCompletion completion;
        platform::HttpOutcome outcome;
    };

    bool take(const std::string& url) {
        const MutexLock lock(mutex_);
        for (auto path = paths_.begin(); path != paths_.end(); ++path) {
            if (!url.ends_with(*path)) continue;
            paths_.erase(path);
            return true;
        }
        return false;
    }

    Mutex mutex_;
    std::deque<std::string> paths_ ORBINEL_GUARDED_BY(mutex_);
    std::deque<Kept> kept_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel::testing
