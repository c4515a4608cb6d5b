#include "apps/orbinel/backend/request_log.hpp"

#include <glib.h>

#include "apps/orbinel/backend/json_writing.hpp"

namespace orbinel::tool {
namespace {

constexpr std::size_t maxRequests = 10'000;
constexpr std::size_t maxBytes = 256'000'000;

std::size_t sizeOf(const ReceivedRequest& request) {
    std::size_t headers = 0;
    for (const auto& header : request.request.headers) {
        headers += sizeof header + header.first.size() + header.second.size();
    }
    return headers + request.request.path.size() + request.request.query.size() + request.request.body.size() +
           request.reading.payload.size() + request.answer.size();
}

}  // namespace

RequestLog::RequestLog() : run_(static_cast<std::uint64_t>(g_get_real_time())) {}

std::shared_ptr<const ReceivedRequest> RequestLog::add(ReceivedRequest request) {
    const MutexLock lock(mutex_);
    request.id = ++count_;
    request.at = now();
    bytes_ += sizeOf(request);
    requests_.push_back(std::make_shared<const ReceivedRequest>(std::move(request)));
    const auto added = requests_.back();
    changed_.notifyAll();
    while (requests_.size() > maxRequests || (bytes_ > maxBytes && requests_.size() > 1)) {
        bytes_ -= sizeOf(*requests_.front());
        requests_.pop_front();
    }
    return added;
}

RequestLog::View RequestLog::after(std::uint64_t id, const Limits& limits) const {
    const MutexLock lock(mutex_);
    View view{run_, {}};
    // Ids are dense, so that a look at what is new does not pass what is old.
    const std::uint64_t first = requests_.empty() ? count_ + 1 : requests_.front()->id;
    const std::uint64_t skipped = id >= first ? id - first + 1 : 0;
    std::size_t bytes = 0;
    for (std::size_t i = skipped; i < requests_.size() && view.requests.size() < limits.requests; ++i) {
        bytes += sizeOf(*requests_[i]);
        if (bytes > limits.bytes && !view.requests.empty()) break;
        view.requests.push_back(requests_[i]);
    }
    return view;
}

bool RequestLog::waitForNews(std::uint64_t run, std::uint64_t id, std::chrono::milliseconds time) const {
    const auto end = std::chrono::steady_clock::now() + time;
    const MutexLock lock(mutex_);
    const auto isNews = [&]() ORBINEL_REQUIRES(mutex_) {
        return run_ != run || (!requests_.empty() && requests_.back()->id > id);
    };
    while (!ended_ && !isNews()) {
        if (!changed_.waitUntil(mutex_, end)) break;
    }
    return !ended_ && isNews();
}

void RequestLog::endWaiting() {
    const MutexLock lock(mutex_);
    ended_ = true;
    changed_.notifyAll();
}

void RequestLog::clear() {
    const MutexLock lock(mutex_);
    requests_.clear();
    bytes_ = 0;
    ++run_;
    changed_.notifyAll();
}

std::uint64_t RequestLog::count() const {
    const MutexLock lock(mutex_);
    return count_;
}

}  // namespace orbinel::tool
