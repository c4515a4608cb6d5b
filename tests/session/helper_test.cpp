#include "session/helper.hpp"

#include <limits>

#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

using HelperTest = LibraryTest;

TEST_F(HelperTest, MakesOneIdentifierForAnInstallationAndShowsItToTheAppGroup) {
    initialise();
    auto& helper = world().helper;
    const auto udid = helper.getUdid();
    ASSERT_TRUE(udid);
    EXPECT_EQ(udid->size(), 32U);
    EXPECT_EQ(udid->find_first_not_of("0123456789ABCDEF"), std::string::npos);
    EXPECT_EQ(helper.getUdid(), udid);
    EXPECT_EQ(host.defaults->appGroup("group.acme")->value(keys::udidKeychain), *udid);
    relaunch();
    EXPECT_EQ(world().helper.getUdid(), udid);
}

// A record of an earlier installation counts only when this is not the first run.
TEST_F(HelperTest, TakesAnEarlierIdentifierOnlyAfterTheFirstRun) {
    auto& helper = world().helper;
    const Dictionary record{{std::string(keys::udidKeychain), "EARLIER"}};
    helper.storeDataInKeychain(keys::udidKeychain, record);
    EXPECT_EQ(helper.retrieveDataFromKeychain(keys::udidKeychain), record);
    const auto fresh = helper.getUdid();
    EXPECT_NE(fresh, "EARLIER");
    EXPECT_EQ(helper.getUdid(), fresh);
    host.settle();
    EXPECT_FALSE(helper.isFirstRun());

    host.defaults->standard()->set(keys::udidCache, {});
    EXPECT_EQ(helper.getUdid(), "EARLIER");
    helper.removeDataFromKeychain(keys::udidKeychain);
    EXPECT_TRUE(helper.retrieveDataFromKeychain(keys::udidKeychain).isAbsent());
    host.secureItems->store(keys::udidKeychain, keys::udidKeychain, "no json");
    EXPECT_EQ(helper.getUdid()->size(), 32U);
}

TEST_F(HelperTest, RemembersFirstTimesAcrossLaunches) {
    EXPECT_TRUE(world().helper.isFirstSession());
    EXPECT_FALSE(world().helper.isFirstSession());
    relaunch();
    EXPECT_FALSE(world().helper.isFirstSession());
    EXPECT_TRUE(world().helper.isFirstRun());
}

TEST_F(HelperTest, WritesDatesInLocalDigits) {
    host.scheduler->setTimeZone("Europe/Istanbul");  // three hours ahead of UTC
    EXPECT_EQ(world().helper.getRFCFromNSDate({begin + 6.5 * 3600 + 0.25}), "2026-01-01T09:30:00.250Z");
    EXPECT_EQ(world().helper.getRFCFromNSDate({std::numeric_limits<double>::infinity()}).size(), 24U);
    EXPECT_EQ(world().helper.getRFCFromNSDate({std::numeric_limits<double>::quiet_NaN()}).size(), 24U);
}

TEST_F(HelperTest, HoldsClocksOutOfRange) {
    EXPECT_EQ(world().helper.getNowAsTimestamp(), 1'767'225'600);
    EXPECT_EQ(world().helper.getTimestampAsString(), "1767225600");
    headless::HeadlessHost late(5e9);
    shutdown();
    host.scheduler = late.scheduler;
    launch();
    EXPECT_EQ(world().helper.getNowAsTimestamp(), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(world().helper.getTimestampAsString(), "5000000000");
    shutdown();
}

TEST_F(HelperTest, ReadsVersionsAsOneNumber) {
    const auto atLeast = [&](const char* version, float wanted) {
        host.device->change([&](platform::DeviceFacts& facts) { facts.osVersion = version; });
        return world().helper.isIOSVersionGreaterOrEqual(wanted);
    };
    EXPECT_TRUE(atLeast("16.0", 16.0F));
    EXPECT_TRUE(atLeast("16.4.1", 16.4F));
    EXPECT_FALSE(atLeast("15.7.2", 16.0F));
    EXPECT_FALSE(atLeast("", 1.0F));
}

}  // namespace
}  // namespace orbinel::testing
