#include "orbinel/headless/orbinel_headless.h"

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/mutex.hpp"
#include "hosts/common/c_options.hpp"
#include "hosts/common/rapidjson_json.hpp"
#include "orbinel/c_interface.hpp"
#include "orbinel/headless/headless_host.hpp"

using orbinel::Array;
using orbinel::Dictionary;
using orbinel::headless::HeadlessHost;
using orbinel::platform::ApplicationState;
namespace c_interface = orbinel::c_interface;
namespace platform = orbinel::platform;

namespace {

/// What the other side of the network does. Threads: any.
class ScriptedAnswers {
public:
    void add(std::string urlPart, platform::HttpResponse response) {
        const orbinel::MutexLock lock(mutex_);
        answers_.emplace_front(std::move(urlPart), std::move(response));
    }

    [[nodiscard]] platform::HttpOutcome answerTo(const platform::HttpRequest& request) const {
        const orbinel::MutexLock lock(mutex_);
        for (const auto& [urlPart, response] : answers_) {
            if (request.url.find(urlPart) != std::string::npos) return response;
        }
        return platform::HttpFailure{"No answer fits the URL.", false};
    }

private:
    mutable orbinel::Mutex mutex_;
    std::deque<std::pair<std::string, platform::HttpResponse>> answers_ ORBINEL_GUARDED_BY(mutex_);  // latest first
};

double startOf(const char* text) {
    orbinel::hosts::COptions given(orbinel::hosts::RapidJson(), text);
    double start = 1'767'225'600;
    given.number("start", start);
    given.expectNoOthers();
    return start;
}

Dictionary described(const platform::HttpRequest& request) {
    Dictionary headers;
    for (const auto& [name, value] : request.headers) headers.set(name, value);
    return {{"method", request.method}, {"url", request.url}, {"headers", std::move(headers)}, {"body", request.body}};
}

}  // namespace

struct orbinel_headless {
    explicit orbinel_headless(double start) : host(start) {
        host.http->setHandler([answers = answers](const auto& request) { return answers->answerTo(request); });
    }

    const std::shared_ptr<ScriptedAnswers> answers = std::make_shared<ScriptedAnswers>();
    HeadlessHost host;
};

namespace {

template <typename Step>
void onHost(const char* function, orbinel_headless* host, Step&& step) noexcept {
    c_interface::run(function, [&] {
        if (host != nullptr) step(*host);
    });
}

/// What `list` lists, as JSON text.
template <typename List>
char* listed(const char* function, orbinel_headless* host, List&& list) noexcept {
    return c_interface::run(function, static_cast<char*>(nullptr), [&] {
        return host != nullptr ? c_interface::newJson(*host->host.json, list(host->host)) : nullptr;
    });
}

void enter(const char* function, orbinel_headless* host, ApplicationState state, std::string_view name) noexcept {
    onHost(function, host, [&](orbinel_headless& it) {
        it.host.application->setState(state);
        it.host.notificationCentre->post(name, {});
    });
}

}  // namespace

orbinel_headless* orbinel_start_headless(const char* options) {
    return c_interface::run(__func__, static_cast<orbinel_headless*>(nullptr), [&] {
        auto made = std::make_unique<orbinel_headless>(startOf(options));
        c_interface::start(made->host.services());
        return made.release();
    });
}

void orbinel_headless_free(orbinel_headless* host) { delete host; }

void orbinel_headless_did_become_active(orbinel_headless* host) {
    enter(__func__, host, ApplicationState::active, platform::notification_names::didBecomeActive);
}

void orbinel_headless_did_enter_background(orbinel_headless* host) {
    enter(__func__, host, ApplicationState::background, platform::notification_names::didEnterBackground);
}

void orbinel_headless_will_terminate(orbinel_headless* host) {
    enter(__func__, host, ApplicationState::background, platform::notification_names::willTerminate);
}

void orbinel_headless_settle(orbinel_headless* host) {
    onHost(__func__, host, [](const orbinel_headless& it) { it.host.settle(); });
}

void orbinel_headless_advance(orbinel_headless* host, double seconds) {
    onHost(__func__, host, [&](const orbinel_headless& it) { it.host.advance(seconds); });
}

void orbinel_headless_answer(orbinel_headless* host, const char* url_part, int32_t status, const char* body) {
    onHost(__func__, host, [&](const orbinel_headless& it) {
        platform::HttpResponse response;
        response.status = status;
        response.body = body != nullptr ? body : "";
        it.answers->add(url_part != nullptr ? url_part : "", std::move(response));
    });
}

char* orbinel_headless_requests(orbinel_headless* host) {
    return listed(__func__, host, [](const HeadlessHost& it) {
        Array requests;
        for (const auto& request : it.http->sent()) requests.push_back(described(request));
        return requests;
    });
}

char* orbinel_headless_console_lines(orbinel_headless* host) {
    return listed(__func__, host, [](const HeadlessHost& it) {
        Array lines;
        for (auto& line : it.console->lines()) lines.push_back(std::move(line));
        return lines;
    });
}
