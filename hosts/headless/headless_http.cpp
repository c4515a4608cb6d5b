#include "orbinel/headless/headless_http.hpp"

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <thread>
#include <utility>

#include "base/mutex.hpp"
#include "hosts/common/callable.hpp"
#include "hosts/headless/redirects.hpp"

namespace orbinel::headless {

namespace {

using platform::HttpFailure;
using platform::HttpOutcome;
using platform::HttpRequest;
using platform::HttpResponse;
using platform::Ticket;

using TransferId = std::uint64_t;

struct Transfer {
    HttpRequest request;
    platform::HttpCompletion completion;
    Ticket timeout;
    std::optional<HttpOutcome> outcome;  // the first one counts
    bool started = false;
};

HttpOutcome cancelled() { return HttpFailure{"The request was cancelled.", true}; }

/// As a client sees the response to the request.
HttpOutcome received(HttpResponse response, const HttpRequest& request) {
    constexpr std::size_t largestBody = 16u * 1024 * 1024;
    if (response.body.value_or("").size() > largestBody) return HttpFailure{"The body is too large.", false};
    if (response.status == 204 || response.status == 304) {
        response.body.reset();
    } else if (!response.body) {
        response.body = "";
    }
    response.finalUrl = request.url;
    return response;
}

}  // namespace

/// The transfers and what the network's thread has to look at. A transfer leaves when the thread takes it to complete
/// it; whoever decides its outcome before (a ticket, a time-out, the end) only says so and wakes the thread.
struct HeadlessHttp::Network {
    explicit Network(std::shared_ptr<platform::Scheduler> c) : clock(std::move(c)) {}

    void run() {
        while (const auto id = nextToLookAt()) lookAt(*id);
    }

    /// Nothing once the end has come and everything has been completed.
    [[nodiscard]] std::optional<TransferId> nextToLookAt() ORBINEL_EXCLUDES(mutex) {
        const MutexLock lock(mutex);
        busy = false;
        changed.notifyAll();
        while (toLookAt.empty() && !ending) changed.wait(mutex);
        if (toLookAt.empty()) return std::nullopt;
        busy = true;
        const auto id = toLookAt.front();
        toLookAt.pop_front();
        return id;
    }

    void lookAt(TransferId id) {
        if (const auto request = takeToStart(id)) {
            if (auto answer = answerTo(*request)) decide(id, std::move(*answer));
        }
        if (auto transfer = takeDecided(id)) transfer->completion(std::move(*transfer->outcome));
    }

    [[nodiscard]] std::optional<HttpRequest> takeToStart(TransferId id) ORBINEL_EXCLUDES(mutex) {
        const MutexLock lock(mutex);
        const auto found = transfers.find(id);
        if (found == transfers.end() || found->second.outcome || found->second.started) return std::nullopt;
        found->second.started = true;
        return found->second.request;
    }

    [[nodiscard]] std::optional<Transfer> takeDecided(TransferId id) ORBINEL_EXCLUDES(mutex) {
        const MutexLock lock(mutex);
        const auto found = transfers.find(id);
        if (found == transfers.end() || !found->second.outcome) return std::nullopt;
        return std::move(transfers.extract(found).mapped());
    }

    /// The answer at the end of all redirects.
    [[nodiscard]] std::optional<HttpOutcome> answerTo(HttpRequest request) {
        constexpr int mostRedirects = 20;
        for (int redirects = 0; redirects <= mostRedirects; ++redirects) {
            if (!isUsableUrl(request.url)) return HttpFailure{"The URL cannot be used.", false};
            auto answer = reach(request);
            auto* response = answer ? std::get_if<HttpResponse>(&*answer) : nullptr;
            if (response == nullptr) return answer;
            auto next = request.followRedirects ? redirected(request, *response) : std::nullopt;
            if (!next) return received(std::move(*response), request);
            request = std::move(*next);
        }
        return HttpFailure{"There were too many redirects.", false};
    }

    /// What the other side does with the request as it leaves.
    [[nodiscard]] std::optional<HttpOutcome> reach(HttpRequest& request) ORBINEL_EXCLUDES(mutex) {
        if (request.method == "GET") request.body.clear();
        Handler asked;
        {
            const MutexLock lock(mutex);
            sent.push_back(request);
            asked = handler;
        }
        return asked ? asked(request) : HttpFailure{"The network has no handler.", false};
    }

    void decide(TransferId id, HttpOutcome outcome) ORBINEL_EXCLUDES(mutex) {
        const MutexLock lock(mutex);
        const auto found = transfers.find(id);
        if (found == transfers.end() || found->second.outcome) return;
        found->second.outcome = std::move(outcome);
        toLookAt.push_back(id);
        changed.notifyAll();
    }

    [[nodiscard]] TransferId add(HttpRequest request, platform::HttpCompletion completion) ORBINEL_EXCLUDES(mutex) {
        const MutexLock lock(mutex);
        const auto id = ++lastId;
        auto& transfer = transfers[id];
        transfer.request = std::move(request);
        transfer.completion = std::move(completion);
        if (ending) transfer.outcome = cancelled();
        return id;
    }

    void begin(TransferId id, Ticket timeout) ORBINEL_EXCLUDES(mutex) {
        const MutexLock lock(mutex);
        // The time-out may have been quicker, and the transfer be gone.
        if (const auto found = transfers.find(id); found != transfers.end()) found->second.timeout = std::move(timeout);
        toLookAt.push_back(id);
        changed.notifyAll();
    }

    void end() ORBINEL_EXCLUDES(mutex) {
        const MutexLock lock(mutex);
        ending = true;
        for (auto& [id, transfer] : transfers) {
            if (!transfer.outcome) transfer.outcome = cancelled();
            toLookAt.push_back(id);
        }
        changed.notifyAll();
    }

    [[nodiscard]] bool isIdle() const ORBINEL_REQUIRES(mutex) { return !busy && toLookAt.empty(); }

    const std::shared_ptr<platform::Scheduler> clock;
    std::thread thread;

    mutable Mutex mutex;
    ConditionVariable changed;
    Handler handler ORBINEL_GUARDED_BY(mutex);
    std::vector<HttpRequest> sent ORBINEL_GUARDED_BY(mutex);
    std::map<TransferId, Transfer> transfers ORBINEL_GUARDED_BY(mutex);
    std::deque<TransferId> toLookAt ORBINEL_GUARDED_BY(mutex);
    TransferId lastId ORBINEL_GUARDED_BY(mutex) = 0;
    bool busy ORBINEL_GUARDED_BY(mutex) = false;
    bool ending ORBINEL_GUARDED_BY(mutex) = false;
};

HeadlessHttp::HeadlessHttp(std::shared_ptr<platform::Scheduler> clock)
    : network_(std::make_shared<Network>(std::move(clock))) {
    network_->thread = std::thread([network = network_] { network->run(); });
}

HeadlessHttp::~HeadlessHttp() {
    network_->end();
    if (std::this_thread::get_id() != network_->thread.get_id()) {
        network_->thread.join();
    } else {
        network_->thread.detach();  // a completion let the last reference go; its thread ends by itself right after it
    }
}

void HeadlessHttp::setHandler(Handler handler) {
    const MutexLock lock(network_->mutex);
    network_->handler = std::move(handler);
}

std::vector<HttpRequest> HeadlessHttp::sent() const {
    const MutexLock lock(network_->mutex);
    return network_->sent;
}

void HeadlessHttp::clearSent() {
    const MutexLock lock(network_->mutex);
    network_->sent.clear();
}

bool HeadlessHttp::waitUntilIdle(std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    const MutexLock lock(network_->mutex);
    while (!network_->isIdle()) {
        if (!network_->changed.waitUntil(network_->mutex, end)) return network_->isIdle();
    }
    return true;
}

std::size_t HeadlessHttp::inFlight() const {
    const MutexLock lock(network_->mutex);
    return network_->transfers.size();
}

Ticket HeadlessHttp::send(HttpRequest request, platform::HttpCompletion completion) noexcept {
    const auto timeout = request.timeout;
    const auto id = network_->add(std::move(request), hosts::callable(std::move(completion)));
    const auto decideAs = [id, weak = std::weak_ptr(network_)](HttpOutcome (*outcome)()) {
        if (const auto network = weak.lock()) network->decide(id, outcome());
    };
    Ticket timer;
    if (network_->clock) {
        timer = network_->clock->postGlobalAfter(timeout, [decideAs] {
            decideAs([]() -> HttpOutcome { return HttpFailure{"The request timed out.", false}; });
        });
    }
    network_->begin(id, std::move(timer));
    return Ticket([decideAs] { decideAs(&cancelled); });
}

}  // namespace orbinel::headless
