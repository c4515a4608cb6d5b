#pragma once

#include <httplib.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <future>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "base/mutex.hpp"
#include "orbinel/value.hpp"
#include "support/received_payload.hpp"

namespace orbinel::testing {

inline constexpr const char* startPath = "/api/v3/session/start";
inline constexpr const char* stopPath = "/api/v3/session/stop";
inline constexpr const char* identityPath = "/api/identity/v3/get";

/// The parameter by which the events of these tests are told apart: a whole number above zero.
inline constexpr const char* sessionNumber = "session_number";

/// A backend on the loopback interface that answers as it is told and remembers what arrived.
///
/// Threads: callable from any thread. Ending: lets go of the answers that are held, then waits for its threads.
class LoopbackBackend {
public:
    /// Fills the response and says whether the client has to take its request for delivered. Runs on several threads.
    using Answer = std::function<bool(const std::string& path, httplib::Response& response)>;

    struct Arrival {
        std::string path;
        bool taken = false;                 // by the answer
        Dictionary payload;                 // empty where it cannot be decoded
        std::vector<std::int64_t> numbers;  // of the events in a stop, in order
    };

    LoopbackBackend() {
        server_.new_task_queue = [] { return new httplib::ThreadPool(48); };  // each open connection keeps one
        server_.set_tcp_nodelay(true);
        server_.set_keep_alive_max_count(1'000'000);
        server_.set_keep_alive_timeout(1);
        server_.Post(".*", [this](const auto& request, auto& response) { handle(request, response); });
        origin = "http://127.0.0.1:" + std::to_string(server_.bind_to_any_port("127.0.0.1"));
        thread_ = std::thread([this] { server_.listen_after_bind(); });
        while (!server_.is_running()) std::this_thread::yield();  // before that it could not be stopped
    }
    ~LoopbackBackend() {
        end_.set_value();
        server_.stop();
        thread_.join();
    }

    /// From now on; at first every request is answered properly, with an empty dictionary.
    void answer(Answer answer) {
        const MutexLock lock(mutex_);
        answer_ = std::move(answer);
    }
    static bool answerProperly(const std::string&, httplib::Response& response) {
        response.set_content("{}", "application/json");
        return true;
    }

    /// Blocks until the time is over or the backend ends.
    void hold(std::chrono::milliseconds time) const { ended_.wait_for(time); }

    std::vector<Arrival> arrivals() const {
        const MutexLock lock(mutex_);
        return arrivals_;
    }

    /// At once, so that none is missed that comes meanwhile.
    std::vector<Arrival> takeArrivals() {
        const MutexLock lock(mutex_);
        return std::exchange(arrivals_, {});
    }

    void forget() {
        const MutexLock lock(mutex_);
        arrivals_.clear();
    }

    /// Of the events in all stops that were taken, in order of arrival.
    std::vector<std::int64_t> takenNumbers() const {
        std::vector<std::int64_t> numbers;
        for (const auto& one : arrivals()) {
            if (one.taken) numbers.insert(numbers.end(), one.numbers.begin(), one.numbers.end());
        }
        return numbers;
    }

    std::string origin;

private:
    void handle(const httplib::Request& request, httplib::Response& response) {
        const auto payload = payloadOf(request.body, request.get_header_value("ts"));
        Answer answer;
        {
            const MutexLock lock(mutex_);
            answer = answer_;
        }
        const bool taken = answer(request.path, response);
        const MutexLock lock(mutex_);
        arrivals_.push_back({request.path, taken, payload, numbersOf(payload)});
    }

    static std::vector<std::int64_t> numbersOf(const Dictionary& stop) {
        std::vector<std::int64_t> numbers;
        const auto* events = stop["custom_events"].ifArray();
        for (const auto& event : events != nullptr ? *events : Array()) {
            const auto* parameters = (*event.ifDictionary())["event_params"].ifDictionary();
            const auto number = parameters != nullptr ? (*parameters)[sessionNumber].integer() : std::nullopt;
            if (number) numbers.push_back(*number);
        }
        return numbers;
    }

    httplib::Server server_;
    std::thread thread_;
    std::promise<void> end_;
    const std::shared_future<void> ended_{end_.get_future()};

    mutable Mutex mutex_;
    Answer answer_ ORBINEL_GUARDED_BY(mutex_) = answerProperly;
    std::vector<Arrival> arrivals_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel::testing
