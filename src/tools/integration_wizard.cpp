#include "tools/integration_wizard.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "base/guard.hpp"
#include "base/json_rules.hpp"
#include "session/stored_keys.hpp"
#include "tools/console_line.hpp"

namespace orbinel {

namespace {

constexpr std::size_t mostWaitingBytes = 1024 * 1024;
constexpr int successful = 200;

/// A message of a session: the feed's name, and the key under which it carries JSON as text.
struct SessionMessage {
    std::string_view methodType;
    std::string_view key;
};

constexpr std::array<SessionMessage, 3> sessionMessages{{
    {"sessionStartResquest", "start_request"},
    {"sessionStopRequest", "stop_request"},
    {"sessionStartResponse", "start_response"},
}};

const SessionMessage* sessionMessageOf(std::string_view methodType) noexcept {
    const auto* const found = std::find_if(
        sessionMessages.begin(), sessionMessages.end(),
        [&](const SessionMessage& known) { return known.methodType == methodType || known.key == methodType; });
    return found != sessionMessages.end() ? found : nullptr;
}

}  // namespace

IntegrationWizard::IntegrationWizard(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      session_(needs.session),
      device_(needs.device),
      testDevices_(needs.testDevices),
      endpoints_(needs.endpoints),
      lifetime_(needs.lifetime),
      http_(needs.http),
      json_(needs.json),
      console_(needs.console) {}

// --- The connection ---

void IntegrationWizard::initConnection(std::optional<std::string> token) noexcept {
    guarded(reports_, "+[IntegrationWizard initConnection:]", [&] {
        if (helper_.sdkDisabled()) return reports_.note("The wizard does not connect: the library is disabled.");
        const auto attempt = beginAttempt(token);
        Dictionary payload;
        payload.set("udid", helper_.getUdid());
        payload.set("orbinel_attributes", device_.getDeviceAttributes());
        sendRequest(std::move(payload), endpoints_.initWizardConnection(), token, [this, attempt](bool succeeded) {
            if (succeeded) connected(attempt);
        });
    });
}

std::uint64_t IntegrationWizard::beginAttempt(const std::optional<std::string>& token) {
    auto kept = token.value_or(std::string());
    const MutexLock lock(mutex_);
    token_.swap(kept);
    return ++attempt_;
}

void IntegrationWizard::connected(std::uint64_t attempt) {
    {
        const MutexLock lock(mutex_);
        if (attempt != attempt_) return;
        isConnectionEstablished_ = true;
    }
    const auto stored = helper_.standardStore().value(keys::deviceLocation);
    const auto* location = stored.ifDictionary();
    if (location == nullptr || location->empty()) return;
    reports_.feedToPanel("deviceLocation", [&] { return *location; });
}

void IntegrationWizard::terminateConnection() noexcept {
    guarded(reports_, "+[IntegrationWizard terminateConnection]", [&] {
        if (helper_.sdkDisabled()) return;
        helper_.standardStore().set(keys::deviceLocation, {});
        helper_.standardStore().synchronize();
        Dictionary payload;
        payload.set("udid", helper_.getUdid());
        sendRequest(std::move(payload), endpoints_.terminateWizardConnection(), endAttempts(), [](bool) {});
    });
}

/// The token that was in force.
std::string IntegrationWizard::endAttempts() {
    std::deque<Feed> dropped;
    const MutexLock lock(mutex_);
    ++attempt_;
    isConnectionEstablished_ = false;
    dropped.swap(waiting_);
    waitingBytes_ = 0;
    return token_;
}

// --- Feeding ---

bool IntegrationWizard::takesFeeds(bool shouldFeed) const noexcept {
    return (shouldFeed && sendsFeeds()) || testDevices_.isTestDevice();
}

void IntegrationWizard::feedData(Dictionary data, std::string_view methodType, bool isError, bool shouldFeed) noexcept {
    guarded(reports_, "+[IntegrationWizard feedData:methodType:isError:shouldFeed:]", [&] {
        putLog(methodType, data, isError);
        if (!shouldFeed || !sendsFeeds()) return;
        Dictionary payload;
        payload.set("method", methodType);
        payload.set("data", std::move(data));
        enqueue(jsonOnOneLine(json_, std::move(payload)));
    });
}

void IntegrationWizard::enqueue(std::string body) {
    {
        const MutexLock lock(mutex_);
        if (!isConnectionEstablished_) return;
        waitingBytes_ += body.size();
        waiting_.push_back({std::move(body), token_});
        dropOldest();
        if (std::exchange(feedUnderWay_, true)) return;
    }
    sendNextFeed();
}

/// The newest stays, however large it is.
void IntegrationWizard::dropOldest() {
    while (waitingBytes_ > mostWaitingBytes && waiting_.size() > 1) {
        waitingBytes_ -= waiting_.front().body.size();
        waiting_.pop_front();
    }
}

void IntegrationWizard::sendNextFeed() noexcept {
    const bool sent = guarded(reports_, "+[IntegrationWizard feedData:methodType:isError:shouldFeed:]", [&] {
        auto feed = takeNextFeed();
        if (!feed) return;
        post(endpoints_.feedDataURL(), std::move(feed->body), feed->token, [this](bool) { sendNextFeed(); });
    });
    if (sent) return;
    const MutexLock lock(mutex_);
    feedUnderWay_ = false;  // the next feed takes the others along
}

std::optional<IntegrationWizard::Feed> IntegrationWizard::takeNextFeed() {
    const bool disabled = helper_.sdkDisabled();
    const MutexLock lock(mutex_);
    if (waiting_.empty() || disabled) {
        feedUnderWay_ = false;
        return std::nullopt;
    }
    auto feed = std::move(waiting_.front());
    waiting_.pop_front();
    waitingBytes_ -= feed.body.size();
    return feed;
}

// --- Sending ---

void IntegrationWizard::sendRequest(Dictionary payload, std::string endpoint,
                                    const std::optional<std::string>& apiToken, Success success) noexcept {
    guarded(reports_, "+[IntegrationWizard sendRequest:endpoint:apiToken:success:]", [&] {
        post(std::move(endpoint), jsonOnOneLine(json_, std::move(payload)), apiToken.value_or(std::string()),
             std::move(success));
    });
}

void IntegrationWizard::post(std::string endpoint, std::string body, const std::string& token, Success success) {
    platform::HttpRequest request;
    request.url = std::move(endpoint);
    request.headers = {{"Authorization", "Bearer " + token},
                       {"Content-Type", "application/json"},
                       {"Content-Length", std::to_string(body.size())},
                       {"X-Requested-With", session_.partnerName()}};
    request.body = std::move(body);
    request.timeout = std::chrono::seconds(60);
    const auto place = underWay_.open();
    underWay_.keep(place,
                   http_.send(std::move(request), lifetime_.whileAlive([this, place, success = std::move(success)](
                                                                           const platform::HttpOutcome& outcome) {
                       underWay_.close(place);
                       const auto* response = std::get_if<platform::HttpResponse>(&outcome);
                       success(response != nullptr && response->status == successful);
                   })));
}

// --- The console ---

void IntegrationWizard::putLog(std::string_view methodType, const Dictionary& message, bool isError) noexcept {
    if (!testDevices_.isTestDevice()) return;
    guarded(reports_, "+[IntegrationWizard putLog:message:isError:]", [&] {
        std::string line(isError ? "[ORBINEL][ERROR][" : "[ORBINEL][DEBUG][");
        line.append(methodType).append("]");
        const auto* session = sessionMessageOf(methodType);
        if (session == nullptr) line += ':';
        const auto* json = session != nullptr ? message[session->key].ifString() : nullptr;
        line.append(" ").append(json != nullptr ? onOneLine(*json) : jsonOnOneLine(json_, message));
        console_.writeLine(line);
    });
}

}  // namespace orbinel
