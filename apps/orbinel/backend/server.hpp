#pragma once

#include <httplib.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>

#include "apps/orbinel/backend/inspector.hpp"
#include "apps/orbinel/backend/overrides.hpp"
#include "apps/orbinel/backend/reply.hpp"
#include "apps/orbinel/backend/request_log.hpp"
#include "apps/orbinel/backend/service.hpp"
#include "apps/orbinel/backend/templates.hpp"
#include "base/mutex.hpp"

namespace orbinel::tool {

struct ServerOptions {
    std::filesystem::path answers;
    std::filesystem::path templates;  // the pages of in-app messages
    bool quiet = false;               // no line a request
    bool payloads = false;            // under each line, the payload
};

/// The stand-in for the API: an HTTP server on the loopback address.
///
/// Threads: `serve` blocks its thread until `stop`, which may be called from any; requests are served on threads of the
/// server's own. Ending: `stop` cuts delayed answers short; `serve` returns when every connection has ended, at most
/// about a second later for those that idle.
class BackendServer {
public:
    explicit BackendServer(ServerOptions options);

    /// Takes the port, or any free one for 0. False when it cannot be had.
    [[nodiscard]] bool bind(int port);
    [[nodiscard]] const std::string& origin() const { return origin_; }

    /// After `bind`, once. False when the socket failed.
    bool serve();
    /// Once another thread is in `serve`, or about to be.
    void stop();

    [[nodiscard]] std::uint64_t requestCount() const { return log_.count(); }

private:
    void addRoutes();
    void serveRequest(const httplib::Request& request, std::string body, httplib::Response& response);
    void refuse(const std::string& problem, httplib::Response& response);
    void serveApi(Incoming incoming, httplib::Response& response);

    [[nodiscard]] Reply usualReply(const Incoming& incoming, const Reading& reading);
    [[nodiscard]] Reply overriddenReply(const Override& wanted, const Incoming& incoming, const Reading& reading);
    void record(Incoming incoming, Reading reading, const Reply& reply);
    void pause(std::chrono::milliseconds time);

    const ServerOptions options_;
    int port_ = 0;
    std::string origin_;
    RequestLog log_;
    Service service_;
    const Templates templates_;
    Overrides overrides_;
    Inspector inspector_;
    httplib::Server server_;
    std::atomic<bool> ended_ = false;
    std::atomic<bool> toldOfRefusal_ = false;

    Mutex outputMutex_;  // keeps the lines of two threads apart

    Mutex stopMutex_;
    ConditionVariable stopped_;
    bool stopping_ ORBINEL_GUARDED_BY(stopMutex_) = false;
};

}  // namespace orbinel::tool
