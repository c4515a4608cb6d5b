#include "session/request_sender.hpp"

#include <atomic>
#include <utility>

#include "base/guard.hpp"
#include "base/json_rules.hpp"
#include "base/value_text.hpp"

namespace orbinel {

namespace {

constexpr std::string_view queueTimestamp = "q-timestamp";

bool isLeftOut(const Dictionary::Entry& entry) {
    const auto* array = entry.second.ifArray();
    return entry.second.isNull() || (array != nullptr && array->empty());
}

bool isSuccess(int status) noexcept { return status >= 200 && status <= 299; }

}  // namespace

/// One request on its way.
struct OrbinelRequest::Outgoing {
    std::string url;
    std::string timestamp;  // of the key and of the "ts" header
    std::string body;
    std::string scrambled;     // the envelope's "payload"; empty where the body is none
    bool isStamped = false;    // it came with the time stamp that its envelope was made under
    bool isEmptyForm = false;  // "{}" stands for a body that could not be scrambled: whoever takes it has taken nothing
    bool isStop = false;
    bool isConsent = false;          // by the endpoints in force when it was sent
    bool answerIsScrambled = false;  // the same
    bool gdprConsent = false;        // the caller's "gdpr_consent"
    std::optional<Element> element;  // where the offline queue keeps a stop
    Answer success;
    Completion taken;  // for a status of success, with whatever body

    // What a stop still waits for: being written down, and its body. The two are done on different threads; whichever
    // comes last goes on, so neither touches what the other has written before that.
    std::atomic<int> preparations{2};

    /// At most once, also when the application's part of it throws.
    void answer(Reports& reports, Value value) {
        auto once = std::exchange(success, nullptr);
        if (!once) return;
        guarded(reports, {"-[OrbinelRequest sendRequest:url:success:]", DescriptionForm::functionAndLine},
                [&] { once(std::move(value)); });
    }
};

OrbinelRequest::OrbinelRequest(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      session_(needs.session),
      endpoints_(needs.endpoints),
      encryptor_(needs.encryptor),
      queue_(needs.queue),
      collaborators_(needs.collaborators),
      lifetime_(needs.lifetime),
      http_(needs.http),
      json_(needs.json),
      scheduler_(needs.scheduler) {}

void OrbinelRequest::sendRequest(Dictionary payload, std::string url, Answer success) noexcept {
    send(std::move(payload), std::move(url), std::move(success), std::nullopt);
}

void OrbinelRequest::sendUntilTaken(Dictionary payload, std::string url, Completion taken, Answer success) noexcept {
    send(std::move(payload), std::move(url), std::move(success), std::nullopt, std::move(taken));
}

void OrbinelRequest::send(Dictionary payload, std::string url, Answer success, std::optional<Element> element,
                          Completion taken) noexcept {
    std::shared_ptr<Outgoing> request;
    const bool sent =
        guarded(reports_, {"-[OrbinelRequest sendRequest:url:success:]", DescriptionForm::functionAndLine}, [&] {
            request = std::make_shared<Outgoing>();
            request->success = std::move(success);
            request->taken = std::move(taken);
            request->timestamp = helper_.getTimestampAsString();
            request->isStop = url.find(endpoints_.sessionStop()) != std::string::npos;
            request->isConsent = url.find("gdpr/set") != std::string::npos || url == endpoints_.sendGDPRConsent();
            request->answerIsScrambled = endpoints_.shouldDecryptEndpoint(url);
            request->url = std::move(url);
            request->gdprConsent = payload["gdpr_consent"].truth();
            request->element = element;
            prepareAndSend(std::move(payload), request);
        });
    if (!sent && request != nullptr) answerLater(request);
}

void OrbinelRequest::prepareAndSend(Dictionary payload, const std::shared_ptr<Outgoing>& request) {
    payload.eraseIf(isLeftOut);
    const bool plain = travelsPlain(payload, *request);
    if (plain) feedStop(*request, payload);
    if (!isValidJsonDeeply(payload)) {
        logInvalidJson();
        if (request->element) queue_.giveUp(*request->element);
        return;
    }
    auto json = json_.serialise(payload, platform::JsonStyle::compact);
    if (!json) {
        if (request->element) {
            queue_.giveUp(*request->element);  // and told when it is dropped
        } else {
            reports_.note([&] { return "POST " + request->url + " can not be sent: its payload can not be written."; });
        }
        return answerLater(request);
    }
    const bool writtenDown = request->isStop && !request->element;
    if (writtenDown) handOver(*json, request);
    request->body = std::move(*json);
    if (!plain) feedStop(*request, scramble(*request));
    if (writtenDown) return postWhenBothAreDone(request);
    post(request);
}

void OrbinelRequest::feedStop(const Outgoing& request, const Dictionary& sent) noexcept {
    if (!request.isStop) return;
    reports_.feed("sessionStopRequest", [&] {
        return Dictionary{{"stop_encrypted", sent}, {"ts", request.timestamp}};
    });
}

/// Nothing, without a request having been made: on another thread, because the caller may hold a lock.
void OrbinelRequest::answerLater(const std::shared_ptr<Outgoing>& request) noexcept {
    scheduler_.postGlobal(lifetime_.whileAlive([this, request] { request->answer(reports_, {}); }));
}

/// A payload that carries its own time stamp is not scrambled again; the stamp itself is no part of it.
bool OrbinelRequest::travelsPlain(Dictionary& payload, Outgoing& request) const {
    if (!endpoints_.shouldEncryptEndpoint(request.url)) return true;
    const auto* stamp = payload.find(queueTimestamp);
    if (stamp == nullptr) return false;
    request.timestamp = stamp->ifString() != nullptr ? *stamp->ifString() : textOf(*stamp);
    payload.erase(queueTimestamp);
    request.scrambled = payload["payload"].stringOrEmpty();
    request.isStamped = true;
    return true;
}

/// Replaces the request's plain body by its envelope, which is also the result.
Dictionary OrbinelRequest::scramble(Outgoing& request) const {
    auto envelope = encryptor_.getEncryptedPayloadForData(request.body, request.timestamp);
    const auto body = json_.serialise(envelope, platform::JsonStyle::compact);
    request.body = body.value_or("{}");
    request.isEmptyForm = !body || envelope.empty();
    request.scrambled = envelope["payload"].stringOrEmpty();
    return envelope;
}

/// Writes a stop down before it is sent. The store works while the body is scrambled.
void OrbinelRequest::handOver(std::string stop, const std::shared_ptr<Outgoing>& request) {
    queue_.handOver(std::move(stop), [this, request](std::optional<Element> element) {
        request->element = element;
        postWhenBothAreDone(request);
    });
}

void OrbinelRequest::postWhenBothAreDone(const std::shared_ptr<Outgoing>& request) noexcept {
    if (request->preparations.fetch_sub(1) != 1) return;
    const bool sent =
        guarded(reports_, {"-[OrbinelRequest sendRequest:url:success:]", DescriptionForm::functionAndLine},
                [&] { post(request); });
    if (!sent) request->answer(reports_, {});
}

void OrbinelRequest::post(const std::shared_ptr<Outgoing>& request) {
    platform::HttpRequest message;
    message.url = request->url;
    message.body = std::move(request->body);
    message.headers = {{"Content-Type", "application/json"},
                       {"Content-Length", std::to_string(message.body.size())},
                       {"ts", request->timestamp},
                       {"X-Requested-With", session_.partnerName()}};
    const auto place = underWay_.open();
    underWay_.keep(place, http_.send(std::move(message),
                                     lifetime_.whileAlive([this, request, place](platform::HttpOutcome outcome) {
                                         underWay_.close(place);
                                         complete(*request, std::move(outcome));
                                     })));
}

void OrbinelRequest::complete(Outgoing& request, platform::HttpOutcome outcome) {
    const GuardedOperation operation("-[OrbinelRequest sendRequest:url:success:]", DescriptionForm::functionAndLine);
    const bool decided = guarded(reports_, operation, true, [&] {
        const auto* response = std::get_if<platform::HttpResponse>(&outcome);
        const bool lost = request.isStop && request.isEmptyForm;
        if (response != nullptr && isSuccess(response->status) && !lost) {
            answered(request, *response);
            return true;
        }
        noteFailure(request, outcome);
        if (response == nullptr && request.isConsent) {
            collaborators_.failedConsent->saveFailedGdprPost(request.gdprConsent);
        }
        return !request.isStop || queueAgain(request);
    });
    if (decided) request.answer(reports_, {});
}

/// For the development log: why a request came to nothing.
void OrbinelRequest::noteFailure(const Outgoing& request, const platform::HttpOutcome& outcome) noexcept {
    reports_.note([&] {
        const auto* failure = std::get_if<platform::HttpFailure>(&outcome);
        const auto* response = std::get_if<platform::HttpResponse>(&outcome);
        const auto reason = failure != nullptr    ? failure->reason
                            : request.isEmptyForm ? "its body could not be scrambled"
                                                  : "status " + std::to_string(response->status);
        return "POST " + request.url + " failed: " + reason;
    });
}

void OrbinelRequest::answered(Outgoing& request, const platform::HttpResponse& response) {
    if (request.taken) request.taken();
    if (!request.isStop) return request.answer(reports_, response.body ? decode(request, response) : Value());
    if (request.element) queue_.delivered(*request.element);
    request.answer(reports_, {});
}

Value OrbinelRequest::decode(const Outgoing& request, const platform::HttpResponse& response) const {
    std::string text = *response.body;
    if (request.answerIsScrambled) {
        auto plain = encryptor_.decryptPayload(text, response.header("ts").value_or(std::string()));
        if (plain) text = std::move(*plain);
    }
    auto parsed = json_.parse(text);
    auto* value = std::get_if<Value>(&parsed);
    const bool container = value != nullptr && (value->ifArray() != nullptr || value->ifDictionary() != nullptr);
    return container ? std::move(*value) : Value(std::move(text));
}

/// False where the stop turns out to be lost: then there is no answer either.
bool OrbinelRequest::queueAgain(Outgoing& request) {
    const auto giveUp = [&](std::string_view reason) {
        reports_.log(LogType::common, LogLevel::info, reason);
        if (request.element) queue_.giveUp(*request.element);
        return false;
    };
    if (request.isEmptyForm && request.element) {  // which the queue holds in plain form
        queue_.addStopRequestToQueue({}, request.element);
        return true;
    }
    const auto plain = encryptor_.decryptPayload(request.scrambled, request.timestamp);
    if (!plain || plain->empty()) return giveUp("Decryption failed for the payload.");
    auto parsed = json_.parse(*plain);
    const auto* value = std::get_if<Value>(&parsed);
    const auto* stop = value != nullptr ? value->ifDictionary() : nullptr;
    if (stop == nullptr) return giveUp("Failed to parse decrypted payload.");
    if (!request.isStamped || !request.element) {
        queue_.addStopRequestToQueue(*stop, request.element);
    } else {  // what the queue holds is the envelope
        queue_.addStopRequestToQueue(*stop);
        queue_.delivered(*request.element);
    }
    return true;
}

void OrbinelRequest::logInvalidJson() noexcept {
    reports_.log(LogType::common, LogLevel::info, "JSON is not valid.", [] {
        return Dictionary{{"function", "sendRequest"}};
    });
}

void OrbinelRequest::sendQueuedRequests(Completion completion) noexcept {
    const GuardedOperation operation("-[OrbinelRequest sendQueuedRequests:]", DescriptionForm::functionAndLine);
    const bool asked = guarded(reports_, operation, [&] {
        queue_.takeAll([this, completion, operation](std::vector<platform::StoredElement> elements) {
            const bool sent = guarded(reports_, operation, [&] { sendElements(std::move(elements), completion); });
            if (!sent) completeLater(completion);
        });
    });
    if (!asked) completeLater(completion);
}

/// Off the store's thread, which must stay free for whatever the completion asks of a store.
void OrbinelRequest::completeLater(const Completion& completion) noexcept {
    scheduler_.postGlobal(lifetime_.whileAlive(completion));
}

void OrbinelRequest::sendElements(std::vector<platform::StoredElement> elements, const Completion& completion) {
    if (elements.empty()) return completeLater(completion);
    // Shared by the answers of this pass: the last one to come calls the completion.
    const auto waiting = std::make_shared<std::atomic<std::size_t>>(elements.size());
    const auto leave = [this, waiting, completion](const Value&) {
        if (waiting->fetch_sub(1) == 1) completeLater(completion);
    };
    for (auto& element : elements) {
        auto parsed = json_.parse(element.json);
        auto* value = std::get_if<Value>(&parsed);
        auto* stop = value != nullptr ? value->ifDictionary() : nullptr;
        if (stop == nullptr) {
            logInvalidJson();
            queue_.giveUp(element.id);
            continue;
        }
        send(std::move(*stop), endpoints_.sessionStop(), leave, element.id);
    }
}

}  // namespace orbinel
