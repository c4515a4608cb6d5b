#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <random>
#include <set>

#include "hosts/common/rapidjson_json.hpp"
#include "platform/forwarding_defaults.hpp"
#include "session/stored_keys.hpp"
#include "support/child_process.hpp"
#include "tests/end_to_end/linux_library.hpp"
#include "tests/linux/temporary_directory.hpp"
#include "tests/port_contract/contract_support.hpp"

// A process that the system kills at any moment loses no session that was handed over.
namespace orbinel::testing {

namespace {

using std::chrono::milliseconds;
using test::ChildProcess;
using test::say;

constexpr int kills = 60;        // at least, as are the sessions
constexpr int longestLife = 40;  // milliseconds

// --- The process that is killed: this very program with an argument ---

/// Says the number of every stop as soon as the store has taken it over, before the library hears of it.
class AnnouncingStore final : public platform::ForwardingDefaultsStore {
public:
    AnnouncingStore(const platform::Services& services, std::atomic<int>& announced)
        : ForwardingDefaultsStore(services.defaults->standard()), main_(services.scheduler), announced_(announced) {}

    void appendInFlight(std::string_view key, std::string json,
                        std::function<void(std::optional<platform::ElementId>)> committed) noexcept override {
        const auto name = "\"" + std::string(sessionNumber) + "\":";
        const auto number = std::stoi(json.substr(json.find(name) + name.size()));
        target_->appendInFlight(key, std::move(json), [this, number, committed = std::move(committed)](auto id) {
            if (id) say(std::to_string(number));
            committed(id);
            ++announced_;
            main_->postMain([] {});
        });
    }

private:
    const std::shared_ptr<platform::Scheduler> main_;
    std::atomic<int>& announced_;
};

class AnnouncingDefaults final : public platform::ForwardingDefaults {
public:
    AnnouncingDefaults(const platform::Services& services, std::atomic<int>& announced)
        : ForwardingDefaults(services.defaults), standard_(std::make_shared<AnnouncingStore>(services, announced)) {}

    std::shared_ptr<platform::DefaultsStore> standard() noexcept override { return standard_; }

private:
    const std::shared_ptr<platform::DefaultsStore> standard_;
};

/// Runs short sessions until it is killed; the last child runs one and ends when everything queued is answered.
int runChild(const char* directory, const char* origin, int launch, bool last) {
    say("ready");
    std::atomic<int> announced{0};
    LinuxLibrary library(directory, origin);
    library.services.defaults = std::make_shared<AnnouncingDefaults>(library.services, announced);
    library.launch();
    if (last) {
        library.runSession(launch * 10'000 + 1);
        return library.runUntilQuiet() ? 0 : 1;
    }
    for (int session = 1;; ++session) {
        library.becomeActive();
        Orbinel::tagEvent("inapp_seen").addParameterWithInt(sessionNumber, launch * 10'000 + session).build();
        library.enterBackground();
        if (!library.runUntil([&] { return announced >= session; })) ::_exit(1);
    }
}

// --- The test ---

class KilledApplication : public ::testing::Test {
protected:
    int upTo(int highest) {
        const MutexLock lock(randomMutex);
        return std::uniform_int_distribution(0, highest)(random);
    }

    /// Lives for a moment that begins, in turns, with the process and with its first session.
    void liveAndDie(int launch) {
        ChildProcess child({directory.path().string(), backend.origin, std::to_string(launch), "killed"});
        std::string line;
        ASSERT_TRUE(child.readLine(line));
        if (launch % 2 == 0 && child.readLine(line)) handedOver.insert(std::stoi(line));
        backend.hold(milliseconds(upTo(longestLife)));
        child.kill();
        while (child.readLine(line)) handedOver.insert(std::stoi(line));
        child.waitForEnd();
    }

    /// How many stops the store still holds, in flight or queued.
    std::size_t leftInStore() const {
        const auto defaults = hosts::makeLinuxDefaults(directory.path(), std::make_shared<hosts::RapidJson>());
        contract::Gathered<std::size_t> found;
        const auto store = defaults->standard();
        store->reclaim(keys::offlineQueue, [&](const auto& reclaimed) { found.add(reclaimed.dropped.size()); });
        store->count(keys::offlineQueue, [&](std::size_t queued) { found.add(queued); });
        EXPECT_TRUE(found.await(2));
        return found.all().at(0) + found.all().at(1);
    }

    const std::size_t seed = fromEnvironment("ORBINEL_SEED", std::random_device()());
    Mutex randomMutex;
    std::mt19937_64 random ORBINEL_GUARDED_BY(randomMutex){seed};
    hosts::TemporaryDirectory directory;
    LoopbackBackend backend;
    std::set<std::int64_t> handedOver;
};

TEST_F(KilledApplication, LosesNoSessionThatWasHandedOver) {
    std::cout << "ORBINEL_SEED=" << seed << std::endl;
    const auto wanted = fromEnvironment("ORBINEL_KILL_SESSIONS", kills);
    backend.answer([this](const std::string& path, httplib::Response& response) {
        const int way = path == stopPath ? upTo(2) : 0;
        if (way == 0) return LoopbackBackend::answerProperly(path, response);
        if (way == 1) backend.hold(milliseconds(upTo(100)));
        response.status = 503;
        return false;
    });
    int launch = 1;
    for (; launch <= kills || handedOver.size() < wanted; ++launch) ASSERT_NO_FATAL_FAILURE(liveAndDie(launch));
    backend.answer(LoopbackBackend::answerProperly);
    ChildProcess last({directory.path().string(), backend.origin, std::to_string(launch), "last"});
    ASSERT_EQ(last.waitForEnd(), 0);

    const auto numbers = backend.takenNumbers();
    const std::set<std::int64_t> taken(numbers.begin(), numbers.end());
    std::vector<std::int64_t> lost;
    std::set_difference(handedOver.begin(), handedOver.end(), taken.begin(), taken.end(), std::back_inserter(lost));
    EXPECT_THAT(lost, ::testing::IsEmpty());
    EXPECT_EQ(leftInStore(), 0);
    std::cout << launch - 1 << " kills, " << handedOver.size() << " sessions handed over" << std::endl;
}

}  // namespace

}  // namespace orbinel::testing

int main(int argumentCount, char** arguments) {
    if (argumentCount == 5) {  // a child: directory, origin, launch, role
        return orbinel::testing::runChild(arguments[1], arguments[2], std::stoi(arguments[3]),
                                          arguments[4] == std::string("last"));
    }
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
