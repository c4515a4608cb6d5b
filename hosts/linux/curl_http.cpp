#include "hosts/linux/curl_http.hpp"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <map>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "base/mutex.hpp"
#include "hosts/common/callable.hpp"
#include "hosts/linux/curl_transfer.hpp"

namespace orbinel::hosts {

namespace {

constexpr std::size_t maximumTransfers = 8;
constexpr int longestPollMilliseconds = 60'000;  // libcurl shortens it to its own next time-out

using TransferPointer = std::unique_ptr<CurlTransfer>;

void initialiseLibcurlOnce() {
    static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    static_cast<void>(initialised);
}

platform::HttpOutcome cancelled() { return platform::HttpFailure{"The request was cancelled.", true}; }

}  // namespace

/// What the service, its tickets and the network thread share.
class CurlHttp::Network : public std::enable_shared_from_this<Network> {
public:
    explicit Network(LinuxNetworkOptions options) : multi_(makeMulti()), settings_(std::move(options)) {}

    std::uint64_t enqueue(platform::HttpRequest request, platform::HttpCompletion completion) {
        std::uint64_t id = 0;
        {
            MutexLock lock(mutex_);
            id = ++lastId_;
            incoming_.push_back(std::make_unique<CurlTransfer>(id, std::move(request), std::move(completion)));
            // A completion may send while the service ends: its thread is still there and sees to that request.
            if (!ending_ && !thread_.joinable()) startThread();
        }
        curl_multi_wakeup(multi_.get());
        return id;
    }

    void cancel(std::uint64_t id) {
        {
            MutexLock lock(mutex_);
            if (ended_) return;
            cancels_.push_back(id);
        }
        curl_multi_wakeup(multi_.get());
    }

    void end() {
        std::thread thread;
        {
            MutexLock lock(mutex_);
            ending_ = true;
            thread = std::move(thread_);
        }
        if (!thread.joinable()) return run();  // which completes what has never found a thread
        curl_multi_wakeup(multi_.get());
        if (thread.get_id() == std::this_thread::get_id()) {
            thread.detach();  // it holds this object and ends as soon as the running completion has returned
        } else {
            thread.join();
        }
    }

private:
    using Multi = std::unique_ptr<CURLM, CURLMcode (*)(CURLM*)>;

    static Multi makeMulti() {
        initialiseLibcurlOnce();
        return {curl_multi_init(), curl_multi_cleanup};
    }

    /// Where the system has no thread left, what has come in waits until the next request finds one.
    void startThread() ORBINEL_REQUIRES(mutex_) {
        try {
            thread_ = std::thread([self = shared_from_this()] { self->run(); });
        } catch (const std::system_error&) {
        }
    }

    // Everything below runs on the network thread.

    void run() {
        while (takeOrders()) {
            startWaiting();
            int running = 0;
            curl_multi_perform(multi_.get(), &running);
            // One completion at a time: what it cancels or sends is seen before the next one.
            if (completeOne()) continue;
            curl_multi_poll(multi_.get(), nullptr, 0, longestPollMilliseconds, nullptr);
        }
    }

    /// False once the service is gone and everything has been completed.
    bool takeOrders() {
        for (;;) {
            std::vector<std::uint64_t> cancels;
            bool ending = false;
            {
                MutexLock lock(mutex_);
                for (auto& transfer : incoming_) waiting_.push_back(std::move(transfer));
                incoming_.clear();
                cancels.swap(cancels_);
                ending = ending_;
                ended_ = ending && waiting_.empty() && active_.empty();
                if (ended_) return false;
            }
            for (const auto id : cancels) cancelTransfer(id);
            if (!ending) return true;
            cancelEverything();
        }
    }

    void startWaiting() {
        while (active_.size() < maximumTransfers && !waiting_.empty()) {
            auto transfer = std::move(waiting_.front());
            waiting_.pop_front();
            const bool ready = transfer->prepare(takeEasy(), settings_) &&
                               curl_multi_add_handle(multi_.get(), transfer->easy()) == CURLM_OK;
            if (ready) {
                const auto id = transfer->id();
                active_.emplace(id, std::move(transfer));
            } else {
                auto outcome = transfer->outcome(CURLE_FAILED_INIT, settings_);
                finish(std::move(transfer), std::move(outcome));
            }
        }
    }

    bool completeOne() {
        int remaining = 0;
        const CURLMsg* message = nullptr;
        do {
            message = curl_multi_info_read(multi_.get(), &remaining);
        } while (message != nullptr && message->msg != CURLMSG_DONE);
        if (message == nullptr) return false;

        const auto code = message->data.result;
        CurlTransfer* ended = nullptr;
        curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &ended);
        auto transfer = takeActive(ended->id());
        auto outcome = transfer->outcome(code, settings_);
        finish(std::move(transfer), std::move(outcome));
        return true;
    }

    void cancelTransfer(std::uint64_t id) {
        if (active_.contains(id)) {
            finish(takeActive(id), cancelled());
            return;
        }
        const auto found = std::find_if(waiting_.begin(), waiting_.end(),
                                        [&](const TransferPointer& transfer) { return transfer->id() == id; });
        if (found == waiting_.end()) return;
        auto transfer = std::move(*found);
        waiting_.erase(found);
        finish(std::move(transfer), cancelled());
    }

    void cancelEverything() {
        while (!active_.empty()) finish(takeActive(active_.begin()->first), cancelled());
        while (!waiting_.empty()) {
            auto transfer = std::move(waiting_.front());
            waiting_.pop_front();
            finish(std::move(transfer), cancelled());
        }
    }

    TransferPointer takeActive(std::uint64_t id) {
        auto node = active_.extract(id);
        curl_multi_remove_handle(multi_.get(), node.mapped()->easy());
        return std::move(node.mapped());
    }

    void finish(TransferPointer transfer, platform::HttpOutcome outcome) {
        if (auto easy = transfer->releaseEasy(); easy && idle_.size() < maximumTransfers) {
            idle_.push_back(std::move(easy));
        }
        transfer->complete(std::move(outcome));
    }

    CurlEasy takeEasy() {
        if (idle_.empty()) return CurlEasy(curl_easy_init());
        auto easy = std::move(idle_.back());
        idle_.pop_back();
        return easy;
    }

    // Of the network thread alone. The handles must be gone before the multi handle that keeps their connections.
    const Multi multi_;
    const NetworkSettings settings_;
    std::vector<CurlEasy> idle_;
    std::map<std::uint64_t, TransferPointer> active_;  // oldest first
    std::deque<TransferPointer> waiting_;

    Mutex mutex_;
    std::uint64_t lastId_ ORBINEL_GUARDED_BY(mutex_) = 0;
    std::vector<TransferPointer> incoming_ ORBINEL_GUARDED_BY(mutex_);
    std::vector<std::uint64_t> cancels_ ORBINEL_GUARDED_BY(mutex_);
    bool ending_ ORBINEL_GUARDED_BY(mutex_) = false;
    bool ended_ ORBINEL_GUARDED_BY(mutex_) = false;
    std::thread thread_ ORBINEL_GUARDED_BY(mutex_);
};

CurlHttp::CurlHttp(LinuxNetworkOptions options) : network_(std::make_shared<Network>(std::move(options))) {}

CurlHttp::~CurlHttp() { network_->end(); }

platform::Ticket CurlHttp::send(platform::HttpRequest request, platform::HttpCompletion completion) noexcept {
    const auto id = network_->enqueue(std::move(request), callable(std::move(completion)));
    return platform::Ticket([network = std::weak_ptr<Network>(network_), id] {
        if (const auto alive = network.lock()) alive->cancel(id);
    });
}

}  // namespace orbinel::hosts
