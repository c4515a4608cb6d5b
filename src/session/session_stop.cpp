#include "session/session_stop.hpp"

#include "base/guard.hpp"
#include "base/sanitize.hpp"
#include "session/session_reason.hpp"

namespace orbinel {

SessionStop::SessionStop(const Needs& needs)
    : reports_(needs.reports),
      session_(needs.session),
      sender_(needs.sender),
      endpoints_(needs.endpoints),
      collaborators_(needs.collaborators) {}

void SessionStop::sendSessionStopRequestWithReason(int reason, Completion completion) noexcept {
    guarded(reports_, "+[OrbinelSession sendSessionStopRequestWithReason:completionBlock:]", [&] {
        const MutexLock lock(oneStopAtATime_);
        reports_.log(LogType::common, LogLevel::info, "Send stop payload called.");
        auto payload = makePayload(reason);
        std::string text;
        const bool fed = reports_.feedsAreTaken(false);
        if (fed) text = session_.dictToJson(payload);
        send(std::move(payload), std::move(completion));
        if (fed) reports_.feed("sessionStopRequest", [&] { return Dictionary{{"stop_request", std::move(text)}}; });
        // What was purchased since the record was taken is dropped: it is counted as part of the session that ended.
        session_.update([](SessionRecord& record) { record.purchased_items.clear(); });
    });
}

Dictionary SessionStop::makePayload(int reason) {
    auto payload = toDictionary(session_.takeForStop());
    if (const auto name = nameOfReason(reason)) payload.set("reason", *name);
    collaborators_.campaigns->setStartRequestCompleted(false);
    sanitizeDictionary(payload);
    session_.filterPayload(payload);
    collaborators_.events->filterInvalidEventParams(payload);
    return payload;
}

void SessionStop::send(Dictionary payload, Completion completion) {
    sender_.sendRequest(std::move(payload), endpoints_.sessionStop(),
                        [this, completion = std::move(completion)](const Value&) {
                            reports_.log(LogType::common, LogLevel::info, "Send stop payload success.");
                            if (completion) completion();
                        });
}

}  // namespace orbinel
