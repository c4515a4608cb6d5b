#include "support/scripted_backend.hpp"

#include <algorithm>

#include "support/received_payload.hpp"

namespace orbinel::testing {

ScriptedBackend::ScriptedBackend(headless::HeadlessHost& host) : host_(host) {
    host.http->setHandler([this](const platform::HttpRequest& request) { return handle(request); });
}

ScriptedBackend::~ScriptedBackend() {
    host_.http->waitUntilIdle();
    host_.http->setHandler({});
}

void ScriptedBackend::answer(const std::string& path, Scripted answer) {
    const MutexLock lock(mutex_);
    answers_[path] = std::move(answer);
}

void ScriptedBackend::answerOnce(const std::string& path, Scripted answer) {
    const MutexLock lock(mutex_);
    once_[path].push_back(std::move(answer));
}

std::vector<Received> ScriptedBackend::received(const std::string& path) const {
    const MutexLock lock(mutex_);
    std::vector<Received> found;
    for (const auto& one : received_) {
        if (one.path.ends_with(path)) found.push_back(one);
    }
    return found;
}

std::vector<std::string> ScriptedBackend::paths() const {
    const MutexLock lock(mutex_);
    std::vector<std::string> all;
    for (const auto& one : received_) all.push_back(one.path);
    return all;
}

void ScriptedBackend::clear() {
    const MutexLock lock(mutex_);
    received_.clear();
}

std::optional<platform::HttpOutcome> ScriptedBackend::handle(const platform::HttpRequest& request) {
    auto received = read(request);
    const MutexLock lock(mutex_);
    received_.push_back(std::move(received));
    const auto answer = next(request.url);
    if (answer.never) return std::nullopt;
    if (!answer.status) return platform::HttpFailure{"The connection broke.", false};
    return platform::HttpResponse{*answer.status, answer.headers, answer.body, request.url};
}

Scripted ScriptedBackend::next(const std::string& url) {
    for (auto& [path, queue] : once_) {
        if (!url.ends_with(path) || queue.empty()) continue;
        auto answer = queue.front();
        queue.pop_front();
        return answer;
    }
    for (const auto& [path, answer] : answers_) {
        if (url.ends_with(path)) return answer;
    }
    return {};
}

Received ScriptedBackend::read(const platform::HttpRequest& request) const {
    Received received;
    received.path = request.url.substr(std::min(request.url.find("/api/"), request.url.size()));
    for (const auto& [name, value] : request.headers) {
        received.headers[name] = value;
        received.headerOrder.push_back(name);
    }
    received.body = request.body;
    received.at = host_.scheduler->now();
    received.payload = payloadOf(request.body, received.headers["ts"]);
    return received;
}

std::vector<std::string> eventNamesOf(const Received& stop) {
    std::vector<std::string> names;
    if (const auto* events = stop.payload["custom_events"].ifArray()) {
        for (const auto& event : *events) names.push_back((*event.ifDictionary())["event_name"].stringOrEmpty());
    }
    return names;
}

}  // namespace orbinel::testing
