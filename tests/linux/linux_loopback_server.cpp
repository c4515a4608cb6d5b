#include "tests/linux/linux_loopback_server.hpp"

#include <httplib.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <thread>

#include "base/mutex.hpp"

namespace orbinel::hosts {

namespace {

constexpr std::size_t threads = 64;  // each request that hangs keeps one
constexpr std::size_t hugeSize = 16 * 1024 * 1024 + 1;
constexpr const char* plainText = "text/plain";

/// Takes connections and closes them at once.
class ClosingListener {
public:
    ClosingListener() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* generic = reinterpret_cast<sockaddr*>(&address);
        if (::bind(socket_, generic, size) != 0 || ::listen(socket_, SOMAXCONN) != 0 ||
            ::getsockname(socket_, generic, &size) != 0) {
            throw std::runtime_error("no port to listen on");
        }
        port_ = ntohs(address.sin_port);
        thread_ = std::thread([this] {
            for (int client = 0; (client = ::accept(socket_, nullptr, nullptr)) >= 0;) ::close(client);
        });
    }
    ~ClosingListener() {
        ::shutdown(socket_, SHUT_RDWR);
        thread_.join();
        ::close(socket_);
    }

    [[nodiscard]] int port() const noexcept { return port_; }

private:
    const int socket_;
    int port_ = 0;
    std::thread thread_;
};

}  // namespace

struct LoopbackServer::Machinery {
    Machinery() {
        server.new_task_queue = [] { return new httplib::ThreadPool(threads); };
        server.set_keep_alive_max_count(1'000'000);
        server.set_keep_alive_timeout(1);
        server.set_tcp_nodelay(true);
        answerWith("/answer", [](auto& response) {
            response.set_header("X-Answer", "yes");
            response.set_content("hello", plainText);
        });
        answerWith("/no-content", [](auto& response) { response.status = 204; });
        answerWith("/broken", [](auto& response) {
            response.status = 500;
            response.set_content("broken", plainText);
        });
        answerWith("/redirect", [this](auto& response) { response.set_redirect(url("/answer")); });
        answerWith("/see-other", [this](auto& response) { response.set_redirect(url("/answer"), 303); });
        answerWith("/circle", [this](auto& response) { response.set_redirect(url("/circle")); });
        answerWith("/hang", [this](auto&) { waitForEnd(std::chrono::hours(1)); });
        answerWith("/announced-huge",
                   [](auto& response) { response.set_content(std::string(hugeSize, 'x'), plainText); });
        answerWith("/huge", [](auto& response) {
            response.set_chunked_content_provider(plainText, [](std::size_t offset, httplib::DataSink& sink) {
                const std::string piece(64 * 1024, 'x');
                if (offset < hugeSize) return sink.write(piece.data(), piece.size());
                sink.done();
                return true;
            });
        });
        answerWith("/trickle", [this](auto& response) {
            response.set_chunked_content_provider(plainText, [this](std::size_t, httplib::DataSink& sink) {
                waitForEnd(std::chrono::milliseconds(5));
                return sink.write("x", 1);
            });
        });
        answerWith("/endless-headers", [](auto& response) {
            for (int i = 0; i < 100; ++i) response.set_header("X-" + std::to_string(i), std::string(4000, 'x'));
        });
        port = server.bind_to_any_port("127.0.0.1");
        if (port <= 0) throw std::runtime_error("no port to listen on");
        thread = std::thread([this] { server.listen_after_bind(); });
        while (!server.is_running()) std::this_thread::yield();  // before that it could not be stopped
    }

    ~Machinery() {
        {
            MutexLock lock(mutex);
            ended = true;
        }
        changed.notifyAll();
        server.stop();
        thread.join();
    }

    template <typename Answer>
    void answerWith(const char* path, Answer answer) {
        const auto handler = [this, answer](const httplib::Request& request, httplib::Response& response) {
            record(request);
            answer(response);
        };
        server.Get(path, handler);
        server.Post(path, handler);
        server.Put(path, handler);
    }

    [[nodiscard]] std::string url(const std::string& path) const {
        return "http://127.0.0.1:" + std::to_string(port) + path;
    }

    void record(const httplib::Request& request) {
        Received one{request.method, request.path, {}, request.body, request.remote_port};
        for (const auto& [name, value] : request.headers) one.headers.emplace_back(name, value);
        MutexLock lock(mutex);
        received.push_back(std::move(one));
    }

    void waitForEnd(std::chrono::milliseconds limit) {
        const auto end = std::chrono::steady_clock::now() + limit;
        MutexLock lock(mutex);
        while (!ended && changed.waitUntil(mutex, end)) {
        }
    }

    httplib::Server server;
    ClosingListener closing;
    int port = 0;
    std::thread thread;

    Mutex mutex;
    ConditionVariable changed;
    bool ended ORBINEL_GUARDED_BY(mutex) = false;
    std::vector<Received> received ORBINEL_GUARDED_BY(mutex);
};

LoopbackServer::LoopbackServer() : machinery_(std::make_unique<Machinery>()) {}

LoopbackServer::~LoopbackServer() = default;

std::string LoopbackServer::url(const std::string& path) const { return machinery_->url(path); }

std::string LoopbackServer::closingUrl() const {
    return "http://127.0.0.1:" + std::to_string(machinery_->closing.port()) + "/";
}

std::vector<LoopbackServer::Received> LoopbackServer::received() const {
    MutexLock lock(machinery_->mutex);
    return machinery_->received;
}

}  // namespace orbinel::hosts
