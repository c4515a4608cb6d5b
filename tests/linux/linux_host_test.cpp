#include "orbinel/linux/linux_host.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

#include "hosts/linux/system_scheduler.hpp"
#include "tests/linux/temporary_directory.hpp"
#include "tests/port_contract/contract_support.hpp"

namespace orbinel::hosts {

namespace {

TEST(LinuxHost, KeepsEverythingInOneDirectory) {
    const TemporaryDirectory directory;
    LinuxHostOptions options;
    options.dataDirectory = directory.path() / "data";
    options.applicationVersion = "2.1.0";
    {
        LinuxHost host(options);
        const auto& services = host.services();
        EXPECT_EQ(services.application->bundle().version, "2.1.0");
        EXPECT_TRUE(services.application->bundle().identifier);
        EXPECT_TRUE(services.secureItems->store("service", "account", "secret"));
        services.defaults->standard()->set("key", 1);
        services.defaults->standard()->synchronize();
    }
    EXPECT_EQ(LinuxHost(options).services().defaults->standard()->value("key"), Value(1));
    EXPECT_EQ(makeLinuxSecureItems(options.dataDirectory)->find("service", "account"), "secret");
}

TEST(SystemScheduler, RunsUntilItIsToldToQuitAndMainIsWhoRunsIt) {
    SystemScheduler scheduler;
    std::atomic<int> ran{0};
    std::thread runner([&] { scheduler.run(); });
    scheduler.postMain([&] {
        EXPECT_TRUE(scheduler.isMain());
        ++ran;
        scheduler.postGlobal([&] {
            scheduler.postMain([&] {
                ++ran;
                scheduler.quit();
            });
        });
    });
    runner.join();
    EXPECT_EQ(ran, 2);
    EXPECT_FALSE(scheduler.isMain());
    EXPECT_EQ(scheduler.runMainQueue(), 0u);
    EXPECT_TRUE(scheduler.isMain());
}

TEST(SystemScheduler, ItsLimitHoldsAlsoWhereThereIsAlwaysATask) {
    SystemScheduler scheduler;
    const std::function<void()> again = [&] { scheduler.postMain(again); };
    again();
    EXPECT_FALSE(scheduler.runUntil([] { return false; }, std::chrono::milliseconds(20)));
}

TEST(SystemScheduler, EndsWhileItsTasksRunAndMayEndInsideThem) {
    for (const bool onMain : {false, true}) {
        auto slot = std::make_shared<std::shared_ptr<SystemScheduler>>(std::make_shared<SystemScheduler>());
        contract::Gathered<int> ended;
        const auto end = [slot, &ended] {
            slot->reset();
            ended.add(1);
        };
        const auto raw = slot->get();
        if (onMain) {
            raw->postMain(end);
            raw->postMain([&] { ended.add(2); });
            raw->run();
        } else {
            raw->postGlobal(end);
        }
        EXPECT_TRUE(ended.await(1));
        EXPECT_EQ(ended.size(), 1u);
    }

    auto scheduler = std::make_unique<SystemScheduler>();
    contract::Gathered<int> begun;
    std::atomic<bool> finished{false};
    std::atomic<bool> ending{false};
    scheduler->postGlobal([&] {
        begun.add(1);
        while (!ending) std::this_thread::yield();
        finished = true;
    });
    ASSERT_TRUE(begun.await(1));
    ending = true;
    scheduler.reset();
    EXPECT_TRUE(finished);
}

}  // namespace

}  // namespace orbinel::hosts
