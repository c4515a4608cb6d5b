#include "apps/orbinel/play/traced_http.hpp"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "hosts/common/rapidjson_json.hpp"
#include "orbinel/headless/headless_console.hpp"
#include "session/encryptor.hpp"

namespace orbinel::tool {

namespace {

using platform::HttpFailure;
using platform::HttpOutcome;
using platform::HttpRequest;
using platform::HttpResponse;

/// For transfers whose time-out counts on another clock: longer than any play.
constexpr std::chrono::milliseconds practicallyNever = std::chrono::hours{24 * 7};

std::optional<Value> parsed(std::string_view text) {
    auto outcome = hosts::RapidJson().parse(text);
    auto* value = std::get_if<Value>(&outcome);
    return value != nullptr ? std::optional(std::move(*value)) : std::nullopt;
}

Dictionary headersOf(const HttpRequest& request) {
    Dictionary headers;
    for (const auto& [name, value] : request.headers) headers.set(name, value);
    return headers;
}

}  // namespace

/// What the service and the completions of its requests share.
struct TracedHttp::Log {
    Log(Trace& t, std::shared_ptr<const platform::Base64> b) : trace(t), base64(std::move(b)) {}

    std::int64_t begin(const HttpRequest& request) {
        std::int64_t id = 0;
        {
            const MutexLock lock(mutex);
            id = ++lastId;
            ++changes;
            urls.emplace(id, request.url);
        }
        trace.writeNetwork({{"request", Dictionary{{"id", id},
                                                   {"method", request.method},
                                                   {"url", request.url},
                                                   {"headers", headersOf(request)},
                                                   {"body", request.body},
                                                   {"payload", payloadOf(request)}}}});
        return id;
    }

    void writeOutcome(std::int64_t id, const HttpOutcome& outcome) {
        Dictionary response{{"id", id}};
        note(outcome);
        if (const auto* answer = std::get_if<HttpResponse>(&outcome)) {
            response.set("status", answer->status);
            response.set("body", Value(answer->body));
        } else {
            const auto& failure = std::get<HttpFailure>(outcome);
            response.set("error", failure.cancelled ? "cancelled" : failure.reason);
        }
        trace.writeNetwork({{"response", std::move(response)}});
    }

    void note(const HttpOutcome& outcome) {
        const auto* failure = std::get_if<HttpFailure>(&outcome);
        const MutexLock lock(mutex);
        hasAnswer |= failure == nullptr;
        hasFailure |= failure != nullptr && !failure->cancelled;
    }

    void end(std::int64_t id) {
        {
            const MutexLock lock(mutex);
            urls.erase(id);
            ++changes;
        }
        changed.notifyAll();
    }

    /// The body's JSON, what an envelope holds in its place; absent where it is no JSON.
    [[nodiscard]] Value payloadOf(const HttpRequest& request) const {
        auto body = parsed(request.body);
        if (!body) return {};
        const auto* envelope = body->ifDictionary();
        const auto* scrambled =
            envelope != nullptr && envelope->size() == 1 ? (*envelope)["payload"].ifString() : nullptr;
        if (scrambled == nullptr) return std::move(*body);
        const auto stamp = std::find_if(request.headers.begin(), request.headers.end(),
                                        [](const auto& header) { return header.first == "ts"; });
        const auto plain = encryptor.decryptPayload(
            *scrambled, stamp != request.headers.end() ? std::string_view(stamp->second) : std::string_view());
        auto payload = plain ? parsed(*plain) : std::nullopt;
        return payload ? std::move(*payload) : std::move(*body);
    }

    Trace& trace;
    const std::shared_ptr<const platform::Base64> base64;
    headless::HeadlessConsole unreadConsole{[](std::string_view) {}};
    Reports unreadReports{unreadConsole};
    const OrbinelEncryptor encryptor{unreadReports, *base64};

    mutable Mutex mutex;
    mutable ConditionVariable changed;
    std::int64_t lastId ORBINEL_GUARDED_BY(mutex) = 0;
    std::uint64_t changes ORBINEL_GUARDED_BY(mutex) = 0;
    bool hasAnswer ORBINEL_GUARDED_BY(mutex) = false;
    bool hasFailure ORBINEL_GUARDED_BY(mutex) = false;
    std::map<std::int64_t, std::string> urls ORBINEL_GUARDED_BY(mutex);  // of what is in flight
};

/// One request on its way, and the two that may end it early: its ticket and its time-out. Tickets are destroyed
/// without the lock, since that may call whoever issued them.
struct TracedHttp::Transfer {
    void keep(platform::Ticket given, platform::Ticket timeOut) {
        const MutexLock lock(mutex);
        if (ended) return;
        ticket = std::move(given);
        timer = std::move(timeOut);
    }

    void cancel(bool byTimeOut) {
        platform::Ticket cancelled;
        const MutexLock lock(mutex);
        if (ended) return;
        timedOut = timedOut || byTimeOut;
        std::swap(cancelled, ticket);
    }

    /// What the library is told: a time-out does not look like a request that somebody cancelled.
    [[nodiscard]] HttpOutcome end(HttpOutcome outcome) {
        platform::Ticket unneeded;
        const MutexLock lock(mutex);
        ended = true;
        std::swap(unneeded, timer);
        ticket.detach();
        const auto* failure = std::get_if<HttpFailure>(&outcome);
        if (timedOut && failure != nullptr && failure->cancelled) return HttpFailure{"Timeout was reached.", false};
        return outcome;
    }

    Mutex mutex;
    platform::Ticket ticket ORBINEL_GUARDED_BY(mutex);
    platform::Ticket timer ORBINEL_GUARDED_BY(mutex);
    bool timedOut ORBINEL_GUARDED_BY(mutex) = false;
    bool ended ORBINEL_GUARDED_BY(mutex) = false;
};

TracedHttp::TracedHttp(std::shared_ptr<platform::Http> target, std::shared_ptr<const platform::Base64> base64,
                       Trace& trace, std::shared_ptr<platform::Scheduler> timeouts)
    : ForwardingHttp(std::move(target)),
      log_(std::make_shared<Log>(trace, std::move(base64))),
      timeouts_(std::move(timeouts)) {}

platform::Ticket TracedHttp::send(HttpRequest request, platform::HttpCompletion completion) noexcept {
    const auto id = log_->begin(request);
    const auto timeout = request.timeout;
    if (timeouts_ != nullptr) request.timeout = practicallyNever;
    const auto transfer = std::make_shared<Transfer>();
    auto ticket = target_->send(std::move(request),
                                [log = log_, transfer, id, completion = std::move(completion)](HttpOutcome outcome) {
                                    outcome = transfer->end(std::move(outcome));
                                    log->writeOutcome(id, outcome);
                                    completion(std::move(outcome));
                                    log->end(id);
                                });
    platform::Ticket timer;
    if (timeouts_ != nullptr) timer = timeouts_->postGlobalAfter(timeout, [transfer] { transfer->cancel(true); });
    transfer->keep(std::move(ticket), std::move(timer));
    return platform::Ticket([transfer] { transfer->cancel(false); });
}

std::size_t TracedHttp::inFlight(const std::vector<std::string>& ignoredParts) const {
    const MutexLock lock(log_->mutex);
    const auto isIgnored = [&](const std::string& url) {
        return std::any_of(ignoredParts.begin(), ignoredParts.end(),
                           [&](const std::string& part) { return url.find(part) != std::string::npos; });
    };
    return static_cast<std::size_t>(std::count_if(log_->urls.begin(), log_->urls.end(),
                                                  [&](const auto& request) { return !isIgnored(request.second); }));
}

bool TracedHttp::isUnanswered() const {
    const MutexLock lock(log_->mutex);
    return log_->hasFailure && !log_->hasAnswer;
}

std::uint64_t TracedHttp::changes() const {
    const MutexLock lock(log_->mutex);
    return log_->changes;
}

void TracedHttp::waitForChange(std::uint64_t known, std::chrono::steady_clock::time_point until) const {
    const MutexLock lock(log_->mutex);
    while (log_->changes == known && log_->changed.waitUntil(log_->mutex, until)) {
    }
}

}  // namespace orbinel::tool
