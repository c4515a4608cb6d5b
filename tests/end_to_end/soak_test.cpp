#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <iostream>
#include <random>
#include <vector>

#include "tests/end_to_end/linux_library.hpp"
#include "tests/linux/temporary_directory.hpp"

// Months of sessions with a server that fails at random: every one is delivered, and no memory is kept.
namespace orbinel::testing {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds timeout{150};
constexpr std::size_t sessionsOfLaunch = 50;
constexpr std::size_t bytesOfChance = 150'000;  // that more or less may be in use, however long it goes on

/// Answers one request in two properly, and the others in every way that a server, or what stands between, can fail.
class MoodyServer {
public:
    explicit MoodyServer(const LoopbackBackend& backend) : backend_(backend) {}

    bool answer(const std::string& path, httplib::Response& response) {
        switch (upTo(15)) {
            case 0:
                response.status = 500;
                return false;
            case 1:
                response.status = 404;
                return false;
            case 2:  // cut off within the body
                response.set_content_provider(1'000, "application/json", [](std::size_t, std::size_t, auto& sink) {
                    return sink.write("{", 1) && false;
                });
                return false;
            case 3:  // too late, on some occasions
                backend_.hold(timeout * upTo(4) / 3);
                response.status = 503;
                return false;
            case 4:
                response.set_redirect("http://127.0.0.1:1/");
                return false;
            case 5:
                response.set_content(std::string("\x00\xfe{]", 4), "application/json");
                return true;
            case 6:
                response.set_content(R"({"inapps": 7, "contents": [[]], "log_flush_time_interval": "x"})", "text/html");
                return true;
            case 7:
                response.status = 204;
                return true;
            default:
                return LoopbackBackend::answerProperly(path, response);
        }
    }

private:
    int upTo(int highest) {
        const MutexLock lock(mutex_);
        return std::uniform_int_distribution(0, highest)(random_);
    }

    const LoopbackBackend& backend_;
    Mutex mutex_;
    std::mt19937 random_ ORBINEL_GUARDED_BY(mutex_){2026};
};

class Soak : public ::testing::Test {
protected:
    void runSession(std::size_t number) {
        const auto stops = library.network->stops.load();
        library.becomeActive();
        Orbinel::tagEvent("inapp_seen").addParameterWithInt(sessionNumber, static_cast<std::int32_t>(number)).build();
        Orbinel::getCurrentUser().setCustomAttributeWithInt("visits", static_cast<std::int32_t>(number));
        library.enterBackground();
        ASSERT_TRUE(library.runUntil([&] { return library.network->stops > stops; }));
        if (number % sessionsOfLaunch == 0) relaunch();
    }
    void relaunch() {
        ASSERT_TRUE(library.runUntilQuiet());
        noteArrivals();
        shutdown();
        library.host->runMainQueue();
        ASSERT_NO_FATAL_FAILURE(library.launch());
    }
    void noteArrivals() {
        for (const auto& arrival : backend.takeArrivals()) {
            ++requests;
            if (!arrival.taken) {
                ++refused;
                continue;
            }
            for (const auto number : arrival.numbers) ++deliveries.at(static_cast<std::size_t>(number));
        }
    }

    /// A day on which everything works: what is queued is delivered. Gives the bytes then in use.
    void recover(std::size_t number, std::size_t& bytesInUse) {
        backend.answer(LoopbackBackend::answerProperly);
        library.network->timeout = std::chrono::minutes(1);
        ASSERT_NO_FATAL_FAILURE(relaunch());
        ASSERT_NO_FATAL_FAILURE(library.runSession(static_cast<std::int32_t>(number)));
        ASSERT_NO_FATAL_FAILURE(relaunch());
        EXPECT_EQ(std::count(deliveries.begin() + 1, deliveries.begin() + static_cast<std::ptrdiff_t>(number) + 1, 0),
                  0);
        EXPECT_TRUE(library.services.defaults->standard()->value(keys::offlineQueue).isAbsent());
        const auto memory = mallinfo2();
        bytesInUse = memory.uordblks + memory.hblkhd;
    }
    void suffer() {
        backend.answer([this](const auto& path, auto& response) { return server.answer(path, response); });
        library.network->timeout = timeout;
    }

    hosts::TemporaryDirectory directory;
    LoopbackBackend backend;
    LinuxLibrary library{directory.path(), backend.origin};
    const std::size_t sessions = fromEnvironment("ORBINEL_SOAK_SESSIONS", 400);
    std::vector<char> deliveries = std::vector<char>(sessions + 1);  // of each session
    std::size_t requests = 0;
    std::size_t refused = 0;
    MoodyServer server{backend};
};

TEST_F(Soak, DeliversEverySessionAndKeepsNoMemory) {
    const auto stretch = std::max<std::size_t>(sessions / 8, 1);
    std::vector<std::size_t> inUse;
    ASSERT_NO_FATAL_FAILURE(library.launch());
    suffer();
    for (std::size_t number = 1; number <= sessions; ++number) {
        if (number % stretch != 0) {
            ASSERT_NO_FATAL_FAILURE(runSession(number));
            continue;
        }
        ASSERT_NO_FATAL_FAILURE(recover(number, inUse.emplace_back()));
        suffer();
    }
    EXPECT_LT(inUse.back(), inUse.front() + bytesOfChance);
    // Where a busy machine makes a good answer come too late, a session is sent again.
    const auto doubled = std::count_if(deliveries.begin(), deliveries.end(), [](int times) { return times > 1; });
    EXPECT_LE(static_cast<std::size_t>(doubled), 2 + sessions / 100);
    std::cout << sessions << " sessions, " << requests << " requests, " << refused << " of them failed, " << doubled
              << " sessions delivered twice; KiB in use:";
    for (const auto bytes : inUse) std::cout << ' ' << bytes / 1024;
    std::cout << std::endl;
}

}  // namespace

}  // namespace orbinel::testing
