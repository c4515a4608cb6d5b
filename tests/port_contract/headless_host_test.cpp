#include <gmock/gmock.h>

#include <cmath>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "hosts/common/glib_time_zone.hpp"
#include "orbinel/headless/headless_host.hpp"

// What a test of an application relies on beyond the contracts of the services: the same calls give the same run.
namespace orbinel::headless {

namespace {

using std::chrono::milliseconds;
using testing::DoubleEq;
using testing::ElementsAre;

struct HeadlessHosts : testing::Test {
    HeadlessHost host{1'767'225'600.1};
    HeadlessScheduler& scheduler = *host.scheduler;
};

TEST_F(HeadlessHosts, AdvanceStopsExactlyAtEachDueTimeAndSettlesThere) {
    std::vector<double> ticks;
    std::vector<double> stops;
    const auto ticket = scheduler.repeatOnMain(milliseconds{100}, [&] { ticks.push_back(scheduler.now()); });
    EXPECT_EQ(scheduler.nextDueTime(), 1'767'225'600.2);
    scheduler.advance(0.3, [&] { stops.push_back(scheduler.now()); });
    // Exact, though sums of tenths are not: the third tick falls on the very end.
    EXPECT_EQ(ticks, (std::vector<double>{1'767'225'600.2, 1'767'225'600.3, 1'767'225'600.4}));
    EXPECT_EQ(stops.size(), 4u);
    EXPECT_EQ(stops.front(), 1'767'225'600.1);
    EXPECT_EQ(stops.back(), 1'767'225'600.4);
}

TEST_F(HeadlessHosts, WorkThatASettlingBringsAboutRunsAtThatStop) {
    std::vector<double> ran;
    bool brought = false;
    const auto later = scheduler.postMainAfter(milliseconds{500}, [] {});
    scheduler.advance(10, [&] {
        if (scheduler.now() != 1'767'225'600.6 || std::exchange(brought, true)) return;
        scheduler.postMain([&] { ran.push_back(scheduler.now()); });
        scheduler.postMainAfter(milliseconds{100}, [&] { ran.push_back(scheduler.now()); }).detach();
    });
    EXPECT_EQ(ran, (std::vector<double>{1'767'225'600.6, 1'767'225'600.7}));
    EXPECT_EQ(scheduler.now(), 1'767'225'610.1);
    EXPECT_FALSE(scheduler.hasDueWork());
}

TEST_F(HeadlessHosts, BothQueuesRunInOneOrder) {
    std::string order;  // no lock needed: the pump waits for each piece of global work
    scheduler.postGlobal([&] { order += "a"; });
    scheduler.postMain([&] { order += "b"; });
    scheduler.postGlobal([&] {
        order += "c";
        scheduler.postMain([&] { order += "e"; });
    });
    scheduler.postGlobal([&] { order += "d"; });
    scheduler.runUntilIdle();
    EXPECT_EQ(order, "abcde");
}

TEST_F(HeadlessHosts, AJumpRunsNothingAndMissedTicksAreNotMadeUpFor) {
    int ticks = 0;
    const auto ticket = scheduler.repeatOnMain(milliseconds{1000}, [&] { ++ticks; });
    scheduler.jump(10.5);
    EXPECT_EQ(ticks, 0);
    EXPECT_TRUE(scheduler.hasDueWork());
    scheduler.runUntilIdle();
    EXPECT_EQ(ticks, 1);
    scheduler.advance(0.5);
    EXPECT_EQ(ticks, 2);
}

TEST_F(HeadlessHosts, WaitingForWorkEndsWhenAnotherThreadBringsSome) {
    EXPECT_FALSE(scheduler.waitForWork(milliseconds{0}));
    std::thread poster([&] { scheduler.postMain([] {}); });
    EXPECT_TRUE(scheduler.waitForWork(std::chrono::seconds{20}));
    poster.join();
}

TEST_F(HeadlessHosts, ThePageIsTheOneThatWasMadeLastOfThoseThatAre) {
    const auto make = [&] {
        return std::get<0>(host.views->makeWebView({}, std::weak_ptr<platform::WebViewDelegate>()));
    };
    EXPECT_EQ(host.views->page(), nullptr);
    auto message = make();
    const auto page = host.views->page();
    auto browser = make();
    EXPECT_NE(host.views->page(), page);
    browser.reset();
    EXPECT_EQ(host.views->page(), page);
    message.reset();
    EXPECT_FALSE(host.views->page()->isAlive());
}

TEST_F(HeadlessHosts, RedirectsResolveLocations) {
    host.http->setHandler([](const platform::HttpRequest& request) -> platform::HttpResponse {
        if (request.url == "http://a.example/w/y") return {307, {{"location", "/x/y"}}, "", ""};
        if (request.url == "http://a.example/x/y") return {302, {{"Location", "z?q=1"}}, "", ""};
        return {200, {}, request.method + request.body, ""};
    });
    platform::HttpOutcome outcome;
    platform::HttpRequest request;
    request.url = "http://a.example/w/y";
    request.body = "b";
    const auto ticket = host.http->send(request, [&](platform::HttpOutcome result) { outcome = std::move(result); });
    host.settle();
    const auto& followed = std::get<platform::HttpResponse>(outcome);
    EXPECT_EQ(followed.finalUrl, "http://a.example/x/z?q=1");
    EXPECT_EQ(followed.body, "POSTb");
}

TEST_F(HeadlessHosts, TheSameSeedMakesTheSameUuidsAndChangesAreSeen) {
    HeadlessDevice same;
    HeadlessDevice other(2);
    const auto uuid = host.device->makeUuid();
    EXPECT_EQ(uuid, same.makeUuid());
    EXPECT_NE(uuid, other.makeUuid());
    const auto before = host.device->facts();
    host.device->change([](platform::DeviceFacts& facts) { facts.battery = 0.1; });
    EXPECT_EQ(host.device->facts()->battery, 0.1);
    EXPECT_EQ(before->battery, 80);  // whoever holds facts keeps those of one moment
}

TEST(TimeZones, FollowTheZoneDatabaseAndTruncateDownwards) {
    const hosts::GlibTimeZone newYork("America/New_York");
    EXPECT_EQ(newYork.localTime(1'782'864'000).hour, 20);  // 2026-07-01T00:00Z, summer time
    EXPECT_EQ(newYork.localTime(1'767'225'600).hour, 19);  // 2026-01-01T00:00Z
    EXPECT_EQ(newYork.localTime(1'767'225'600).year, 2025);
    EXPECT_EQ(newYork.localTime(-1e18).year, 1);

    const hosts::GlibTimeZone utc("No/Such_Zone");
    const auto before1970 = utc.localTime(-0.001);
    EXPECT_EQ(before1970.year, 1969);
    EXPECT_EQ(before1970.second, 59);
    EXPECT_EQ(before1970.millisecond, 999);
    EXPECT_EQ(utc.localTime(std::nan("")).year, 1970);
    for (int millisecond = 0; millisecond < 1000; ++millisecond) {
        EXPECT_EQ(utc.localTime(1'767'225'630 + millisecond / 1000.0).millisecond, millisecond);
    }
    EXPECT_EQ(utc.localTime(1.000'999).millisecond, 0);
    EXPECT_EQ(utc.localTime(1e300).millisecond, 999);
    EXPECT_EQ(hosts::GlibTimeZone("Pacific/Kiritimati").localTime(1e300).year, 9999);
}

}  // namespace

}  // namespace orbinel::headless
