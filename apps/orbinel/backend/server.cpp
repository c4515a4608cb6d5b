#include "apps/orbinel/backend/server.hpp"

#include <glib.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <thread>
#include <utility>

#include "apps/orbinel/backend/access.hpp"
#include "apps/orbinel/backend/endpoints.hpp"
#include "apps/orbinel/backend/inspection.hpp"
#include "apps/orbinel/backend/json_writing.hpp"
#include "apps/orbinel/decode/scrambling.hpp"

namespace orbinel::tool {
namespace {

constexpr const char* host = "127.0.0.1";
constexpr const char* jsonType = "application/json";
constexpr const char* anyPath = R"([\s\S]*)";
constexpr std::size_t maxBody = 16'000'000;     // unpacked
constexpr std::size_t maxDropped = 64'000'000;  // read for nothing, so that a sender gets the answer that refuses
// A connection holds a thread while it is kept alive and while half of a request has come: enough of them that a client
// with many does not wait for itself, nor a page for that client.
constexpr std::size_t threads = 96;
constexpr time_t idleSeconds = 1;
constexpr time_t readSeconds = 2;  // between two pieces of a request
constexpr std::size_t maxShownPayload = 400;
constexpr std::size_t maxNote = 160;
constexpr std::size_t maxRecordedAnswer = 4'000'000;

/// A body that neither its length nor chunks announce is none: reading it would wait for the end of the connection.
bool hasBody(const httplib::Request& request) {
    return request.has_header("Content-Length") || request.has_header("Transfer-Encoding");
}

struct Body {
    std::string bytes;  // empty where there are too many
    bool isTooLarge = false;
    bool isAtEnd = true;  // false: more of it may come on the connection
};

/// Reads the body as it stands, forms included, which the HTTP library would otherwise take apart, and counts what it
/// unpacks.
Body readBody(const httplib::Request& request, const httplib::ContentReader& reader, std::size_t most) {
    Body body;
    if (!hasBody(request)) return body;
    std::size_t size = 0;
    const auto append = [&](const char* bytes, std::size_t count) {
        size += count;
        body.isTooLarge = size > most;
        body.isTooLarge ? body.bytes.clear() : static_cast<void>(body.bytes.append(bytes, count));
        return size <= most + maxDropped;
    };
    body.isAtEnd = request.is_multipart_form_data()
                       ? reader([](const httplib::MultipartFormData&) { return true; }, append)
                       : reader(append);
    return body;
}

/// Ends the connection with this answer. What is left of the request on it must not be taken for a request of its own:
/// its sender, a page of another site perhaps, would have written the headers of that one too.
void closeAfter(httplib::Response& response) {
    const auto text = std::make_shared<const std::string>(std::move(response.body));
    response.body.clear();
    response.headers.erase("Content-Type");
    response.set_header("Connection", "close");
    response.set_content_provider(text->size(), jsonType,
                                  [text](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
                                      sink.write(text->data() + offset, length);
                                      return false;  // which is what makes the HTTP library close it
                                  });
}

void answerUnread(int status, httplib::Response& response) {
    response.status = status;
    response.set_content(errorBody(status == 413 ? "A body may have at most 16 MB, unpacked."
                                                 : "The request cannot be read (" + std::to_string(status) + ")."),
                         jsonType);
}

Incoming incomingFrom(const httplib::Request& request, std::string body) {
    const auto mark = request.target.find('?');
    auto query = mark == std::string::npos ? std::string() : request.target.substr(mark + 1);
    Incoming incoming{request.method, request.path, std::move(query), {}, std::move(body)};
    for (const auto& [name, value] : request.headers) {
        // The HTTP library's own additions; the connection's ends are not part of what was sent.
        const bool added =
            name == "REMOTE_ADDR" || name == "REMOTE_PORT" || name == "LOCAL_ADDR" || name == "LOCAL_PORT";
        if (!added) incoming.headers.emplace_back(name, value);
    }
    return incoming;
}

std::string recordedAnswer(const Reply& reply) {
    const bool isJson = std::none_of(reply.headers.begin(), reply.headers.end(), [](const auto& header) {
        return g_ascii_strcasecmp(header.first.c_str(), "Content-Type") == 0 && header.second != jsonType;
    });
    return isJson && reply.body.size() <= maxRecordedAnswer ? reply.body : std::string();
}

}  // namespace

BackendServer::BackendServer(ServerOptions options)
    : options_(std::move(options)),
      service_(options_.answers),
      templates_(options_.templates),
      inspector_({log_, service_, overrides_}) {
    server_.new_task_queue = [] { return new httplib::ThreadPool(threads); };
    server_.set_payload_max_length(maxBody);
    server_.set_keep_alive_timeout(idleSeconds);
    server_.set_read_timeout(readSeconds);
    server_.set_keep_alive_max_count(1'000'000);
    server_.set_tcp_nodelay(true);
    // The HTTP library's default would let a second backend take the same port and share its requests.
    server_.set_socket_options([](socket_t socket) {
        const int yes = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    addRoutes();
}

void BackendServer::addRoutes() {
    const auto withBody = [this](const httplib::Request& request, httplib::Response& response,
                                 const httplib::ContentReader& reader) {
        const auto problem = accessProblem(request, port_);
        auto body = readBody(request, reader, problem.empty() ? maxBody : 0);
        if (!problem.empty()) {
            refuse(problem, response);
        } else if (body.isTooLarge || !body.isAtEnd) {
            answerUnread(body.isTooLarge ? 413 : response.status, response);
        } else {
            serveRequest(request, std::move(body.bytes), response);
        }
        if (!body.isAtEnd) closeAfter(response);
    };
    server_.Post(anyPath, withBody);
    server_.Put(anyPath, withBody);
    server_.Patch(anyPath, withBody);
    server_.Delete(anyPath, withBody);
    const auto withoutBody = [this](const httplib::Request& request, httplib::Response& response) {
        const auto problem = accessProblem(request, port_);
        problem.empty() ? serveRequest(request, {}, response) : refuse(problem, response);
    };
    server_.Get(anyPath, withoutBody);
    server_.Options(anyPath, withoutBody);
    server_.set_error_handler([](const httplib::Request&, httplib::Response& response) {
        if (response.body.empty() && !response.content_provider_) answerUnread(response.status, response);
    });
}

bool BackendServer::bind(int port) {
    if (port == 0) {
        port = server_.bind_to_any_port(host);
        if (port <= 0) return false;
    } else if (!server_.bind_to_port(host, port)) {
        return false;
    }
    port_ = port;
    origin_ = "http://" + std::string(host) + ':' + std::to_string(port);
    return true;
}

bool BackendServer::serve() {
    const bool served = server_.listen_after_bind();
    ended_ = true;
    return served;
}

void BackendServer::stop() {
    {
        const MutexLock lock(stopMutex_);
        stopping_ = true;
        stopped_.notifyAll();
    }
    log_.endWaiting();
    // The HTTP library ignores a stop that comes before it has begun.
    while (!ended_ && !server_.is_running()) std::this_thread::yield();
    server_.stop();
}

void BackendServer::pause(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    const MutexLock lock(stopMutex_);
    while (!stopping_ && stopped_.waitUntil(stopMutex_, end)) {
    }
}

void BackendServer::serveRequest(const httplib::Request& request, std::string body, httplib::Response& response) {
    if (Inspector::isResponsibleFor(request.path)) {
        inspector_.serve(request, body, response);
    } else {
        serveApi(incomingFrom(request, std::move(body)), response);
    }
}

/// Told on the terminal once: an application that reaches the backend by another name is nowhere else to be seen.
void BackendServer::refuse(const std::string& problem, httplib::Response& response) {
    if (!toldOfRefusal_.exchange(true)) {
        std::fputs(("orbinel backend: a request was refused, " + problem + ".\n").c_str(), stderr);
    }
    response.status = 403;
    response.set_content(refusal(403, problem).body, jsonType);
}

void BackendServer::serveApi(Incoming incoming, httplib::Response& response) {
    auto reading = isTemplatePath(incoming.path) ? readTemplateRequest(incoming) : readRequest(incoming);
    const auto wanted = overrides_.take(incoming.path);
    auto reply = wanted ? overriddenReply(*wanted, incoming, reading) : usualReply(incoming, reading);
    // A path of the person's own is none of the API's, but not a mistake either.
    if (wanted && !reading.served) reading.problem.clear();
    if (!reply.problem.empty()) reading.problem = reply.problem;
    if (!reply.note.empty()) reading.summary += (reading.summary.empty() ? "" : ", ") + shortened(reply.note, maxNote);
    record(std::move(incoming), std::move(reading), reply);
    if (wanted && wanted->delay.count() > 0) pause(wanted->delay);

    response.status = reply.status;
    for (const auto& [name, value] : reply.headers) response.set_header(name, value);
    if (reply.status == 204 || reply.status == 304) return;
    response.body = std::move(reply.body);
    if (!response.has_header("Content-Type")) response.set_header("Content-Type", jsonType);
}

Reply BackendServer::usualReply(const Incoming& incoming, const Reading& reading) {
    if (!reading.served) return refusal(404, reading.problem);
    if (reading.unreadableEnvelope) return refusal(400, reading.problem);
    if (const auto page = templateAddressOf(incoming.path)) return templates_.reply(*page);
    return service_.reply(*findEndpoint(incoming.path), incoming, reading, origin_);
}

Reply BackendServer::overriddenReply(const Override& wanted, const Incoming& incoming, const Reading& reading) {
    Reply reply;
    if (wanted.body) {
        reply.body = *wanted.body;
    } else if (wanted.status < 300) {
        reply = usualReply(incoming, reading);
    } else {
        reply.body = errorBody("This answer was asked for at /inspect/answer.");
    }
    reply.status = wanted.status;
    if (wanted.scrambled && wanted.body) {
        const auto timestamp = secondsNow();
        reply.body = scramble(reply.body, timestamp);
        reply.headers.emplace_back("ts", timestamp);
    }
    for (const auto& header : wanted.headers) {
        std::erase_if(reply.headers, [&](const auto& other) {
            return g_ascii_strcasecmp(other.first.c_str(), header.first.c_str()) == 0;
        });
    }
    reply.headers.insert(reply.headers.end(), wanted.headers.begin(), wanted.headers.end());
    return reply;
}

void BackendServer::record(Incoming incoming, Reading reading, const Reply& reply) {
    const auto received =
        log_.add({0, 0, std::move(incoming), std::move(reading), reply.status, recordedAnswer(reply)});
    if (options_.quiet) return;
    auto text = requestAsLine(*received) + '\n';
    if (options_.payloads && !received->reading.payload.empty()) {
        text += "          " + shortened(received->reading.payload, maxShownPayload) + '\n';
    }
    const MutexLock lock(outputMutex_);
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

}  // namespace orbinel::tool
