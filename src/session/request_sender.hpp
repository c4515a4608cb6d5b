#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "base/ticket_box.hpp"
#include "orbinel/platform/http.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "session/collaborators.hpp"
#include "session/encryptor.hpp"
#include "session/endpoints.hpp"
#include "session/helper.hpp"
#include "session/offline_queue.hpp"
#include "session/session.hpp"

namespace orbinel {

/// The answer to a request: parsed JSON (a dictionary or an array), the body's text where it is nothing of that kind,
/// or absent.
using Answer = std::function<void(Value)>;

/// The library's one HTTP client: posts JSON, scrambles and unscrambles it where the endpoint asks for that, and keeps
/// session stops until they are answered.
///
/// Threads: any. Answers come on a background thread, at most once each, never inside the call, and not after the world
/// has ended.
class OrbinelRequest {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        const OrbinelEndpoints& endpoints;
        const OrbinelEncryptor& encryptor;
        OfflineQueue& queue;
        SessionCollaborators& collaborators;
        const Lifetime& lifetime;
        platform::Http& http;
        const platform::Json& json;
        platform::Scheduler& scheduler;
    };

    explicit OrbinelRequest(const Needs& needs);

    /// Posts the payload, less its null markers and empty arrays. A payload that is no valid JSON to its last leaf is
    /// reported and dropped without an answer. A payload for a scrambled endpoint that holds "q-timestamp" travels
    /// plain, under that time stamp.
    void sendRequest(Dictionary payload, std::string url, Answer success) noexcept;

    /// The same for a caller who needs to know that the backend has taken the payload: `taken` is called for a status
    /// of success whatever the body, also without one, and for nothing else; `success` after it, or where it fails.
    void sendUntilTaken(Dictionary payload, std::string url, Completion taken, Answer success) noexcept;

    /// Sends every queued stop at once and calls the completion when all are answered. A stop whose sending ends
    /// without a verdict keeps the completion from ever being called.
    void sendQueuedRequests(Completion completion) noexcept;

    /// Cancels what is under way. Stops among it stay in flight and are queued again at the next launch.
    void cancelAll() { underWay_.cancelAll(); }

private:
    struct Outgoing;
    using Element = OfflineQueue::Element;

    void send(Dictionary payload, std::string url, Answer success, std::optional<Element> element,
              Completion taken = {}) noexcept;
    void prepareAndSend(Dictionary payload, const std::shared_ptr<Outgoing>& request);
    [[nodiscard]] bool travelsPlain(Dictionary& payload, Outgoing& request) const;
    Dictionary scramble(Outgoing& request) const;
    void feedStop(const Outgoing& request, const Dictionary& sent) noexcept;
    void answerLater(const std::shared_ptr<Outgoing>& request) noexcept;
    void handOver(std::string stop, const std::shared_ptr<Outgoing>& request);
    void postWhenBothAreDone(const std::shared_ptr<Outgoing>& request) noexcept;
    void post(const std::shared_ptr<Outgoing>& request);

    void complete(Outgoing& request, platform::HttpOutcome outcome);
    void noteFailure(const Outgoing& request, const platform::HttpOutcome& outcome) noexcept;
    void answered(Outgoing& request, const platform::HttpResponse& response);
    [[nodiscard]] Value decode(const Outgoing& request, const platform::HttpResponse& response) const;
    [[nodiscard]] bool queueAgain(Outgoing& request);
    void logInvalidJson() noexcept;
    void sendElements(std::vector<platform::StoredElement> elements, const Completion& completion);
    void completeLater(const Completion& completion) noexcept;

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    const OrbinelEndpoints& endpoints_;
    const OrbinelEncryptor& encryptor_;
    OfflineQueue& queue_;
    SessionCollaborators& collaborators_;
    const Lifetime& lifetime_;
    platform::Http& http_;
    const platform::Json& json_;
    platform::Scheduler& scheduler_;
    TicketBox underWay_;
};

}  // namespace orbinel
