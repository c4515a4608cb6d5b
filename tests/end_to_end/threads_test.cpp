#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/end_to_end/linux_library.hpp"
#include "tests/linux/temporary_directory.hpp"

// An application may call from any thread, at any time, also while the library ends and starts again.
namespace orbinel::testing {

namespace {

constexpr int threadCount = 8;
constexpr int launches = 4;
constexpr int eventsOfThread = 100;  // in each launch

int numberOf(int launch, int thread, int event) { return launch * 10'000 + thread * 1'000 + event + 1; }

/// Eight threads that record numbered events in each launch and call other operations all the time.
struct Crowd {
    Crowd() {
        for (int thread = 0; thread < threadCount; ++thread) threads.emplace_back([=, this] { work(thread); });
    }
    ~Crowd() { leave(); }
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;

    void leave() {
        launch = launches + 1;
        for (auto& thread : threads) thread.join();
        threads.clear();
    }

    void work(int thread) {
        for (int own = 1; own <= launches; ++own) {
            while (launch < own) callEverything();
            for (int event = 0; event < eventsOfThread && launch <= launches; ++event) {
                const int number = numberOf(own, thread, event);
                Orbinel::tagEvent("inapp_seen").addParameterWithInt(sessionNumber, number).build();
                if (event % 10 == thread) callEverything();
                if (event % 50 == thread) Orbinel::reinitWithPartnerName(event < 50 ? "acme_two" : "acme");
                if (event % 40 == thread) logIn(number);
                if (event % 50 == thread) handlePush(number);
            }
            ++done;
        }
        while (launch <= launches) callEverything();
    }

    void callEverything() {
        static_cast<void>(Orbinel::getOrbinelID());
        Orbinel::registerOrbinelIDListenerWithSelector([](auto& calls, const std::string&) { ++calls; },
                                                       std::weak_ptr(newIds));
        Orbinel::registerOrbinelCallbackWithSelector([](auto& calls, const Dictionary&) { ++calls; },
                                                     std::weak_ptr(startedSessions));
        Orbinel::tagEvent("looked_around").build();
        static_cast<void>(Orbinel::getContentStringWithName("title", "Welcome", OrbinelVariableTypeContent));
        static_cast<void>(Orbinel::getContentIntWithoutCache("columns", 2, OrbinelVariableTypeElement));
        Orbinel::itemAddedToCartWithProduct(
            Orbinel::createNewProductWithID("shoe", "Shoe", {"Shoes"}, "https://img", 9.5, "EUR").setQuantity(2));
        std::this_thread::yield();
    }

    /// Describes the user of the thread and logs them in, each time somebody else.
    static void logIn(int number) {
        OrbinelUser user = Orbinel::getCurrentUser();
        user.setAge(number % 99 + 1).setCustomAttributeWithInt("seen", number);
        user.login(OrbinelIdentifiers().addUserID("person " + std::to_string(number)), [](const std::string&) {});
    }

    /// A push of a campaign of its own, which two threads may handle at once.
    static void handlePush(int number) {
        Orbinel::setPushToken(std::to_string(number));
        Orbinel::handlePushLogWithUserInfo(Dictionary{{"aps", Dictionary()},
                                                      {"source", "Orbinel"},
                                                      {"camp_id", number % 100},
                                                      {"camp_type", 1},
                                                      {"variant_id", 1}});
    }

    const std::shared_ptr<std::atomic<int>> newIds = std::make_shared<std::atomic<int>>(0);
    const std::shared_ptr<std::atomic<int>> startedSessions = std::make_shared<std::atomic<int>>(0);
    std::atomic<int> launch{0};
    std::atomic<int> done{0};  // threads, in all launches
    std::vector<std::thread> threads;
};

TEST(ManyThreads, EveryRecordedEventArrivesOnceAcrossSessionsAndLaunches) {
    hosts::TemporaryDirectory directory;
    LoopbackBackend backend;
    std::atomic<int> ids{0};
    backend.answer([&](const std::string& path, httplib::Response& response) {
        const auto id = "id" + std::to_string(++ids);
        const auto start = R"({"new_id": ")" + id + R"(", "contents": [{"content_id": 1, "variant_id": 1,)" +
                           R"("variables": [{"variable_name": "title", "new_value": "Hello"}]}]})";
        response.set_content(path == startPath ? start : path == identityPath ? id : "{}", "application/json");
        return true;
    });
    LinuxLibrary library(directory.path(), backend.origin);
    std::vector<std::int64_t> recorded;
    Crowd crowd;
    for (int launch = 1; launch <= launches; ++launch) {
        ASSERT_NO_FATAL_FAILURE(library.launch());
        crowd.launch = launch;
        for (int thread = 0; thread < threadCount; ++thread) {
            for (int event = 0; event < eventsOfThread; ++event) recorded.push_back(numberOf(launch, thread, event));
        }
        const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(2);
        while (backend.takenNumbers().size() < recorded.size() && std::chrono::steady_clock::now() < end) {
            const auto stops = library.network->stops.load();
            library.becomeActive();
            library.host->runMainQueue();
            library.enterBackground();
            // A foreground period that ends before its session could start sends no stop.
            const auto quiet = [&] { return library.network->stops > stops || library.network->underWay == 0; };
            ASSERT_TRUE(library.runUntil(quiet));
        }
        EXPECT_EQ(crowd.done, launch * threadCount);
        EXPECT_TRUE(library.runUntilQuiet());
        shutdown();
        if (HasFailure()) break;
    }
    crowd.leave();
    auto taken = backend.takenNumbers();
    std::sort(taken.begin(), taken.end());
    EXPECT_EQ(taken, recorded);
    EXPECT_GT(*crowd.newIds, 0);
    EXPECT_GT(*crowd.startedSessions, 0);
}

}  // namespace

}  // namespace orbinel::testing
