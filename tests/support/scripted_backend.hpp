#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/mutex.hpp"
#include "orbinel/headless/headless_host.hpp"

namespace orbinel::testing {

/// One answer of the backend; without a status the connection breaks, `never` leaves it open.
struct Scripted {
    std::optional<int> status = 200;
    std::optional<std::string> body = "{}";
    platform::HttpHeaders headers = {};
    bool never = false;
};

struct Received {
    std::string path;
    std::map<std::string, std::string> headers;
    std::vector<std::string> headerOrder;
    std::string body;
    Dictionary payload;  // unscrambled where the body is an envelope
    double at = 0;       // seconds since 1970 on the host's clock
};

/// The other side of a headless host's HTTP service: answers as it is told and keeps what it received.
class ScriptedBackend {
public:
    explicit ScriptedBackend(headless::HeadlessHost& host);
    /// Waits for the requests that it is still answering.
    ~ScriptedBackend();
    ScriptedBackend(const ScriptedBackend&) = delete;
    ScriptedBackend& operator=(const ScriptedBackend&) = delete;

    /// Answers every request to a URL that ends in `path` so, from now on.
    void answer(const std::string& path, Scripted answer);
    /// Answers the next such request so, and then as before.
    void answerOnce(const std::string& path, Scripted answer);

    std::vector<Received> received(const std::string& path) const;
    std::vector<Received> starts() const { return received("/api/v3/session/start"); }
    std::vector<Received> stops() const { return received("/api/v3/session/stop"); }
    std::vector<std::string> paths() const;
    void clear();

private:
    std::optional<platform::HttpOutcome> handle(const platform::HttpRequest& request);
    Scripted next(const std::string& url) ORBINEL_REQUIRES(mutex_);
    Received read(const platform::HttpRequest& request) const;

    headless::HeadlessHost& host_;
    mutable Mutex mutex_;
    std::map<std::string, Scripted> answers_ ORBINEL_GUARDED_BY(mutex_);
    std::map<std::string, std::deque<Scripted>> once_ ORBINEL_GUARDED_BY(mutex_);
    std::vector<Received> received_ ORBINEL_GUARDED_BY(mutex_);
};

/// The names of a stop's events, in order.
std::vector<std::string> eventNamesOf(const Received& stop);

}  // namespace orbinel::testing
