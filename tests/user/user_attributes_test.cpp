#include <limits>
#include <set>
#include <thread>

#include "user/attribute_codes.hpp"
#include "user/user_library_test.hpp"

namespace orbinel::testing {
namespace {

using UserAttributesTest = UserLibraryTest;

TEST_F(UserAttributesTest, StandardAttributesAreFedUnderTheirCodesAndGoWithTheStop) {
    becomeActive();
    user().setName("Ada").setBirthday(Date{0}).setAge(36).setName("");
    const auto feeds = sinks.feeds("setUserAttribute");
    ASSERT_THAT(feeds, SizeIs(3));
    EXPECT_EQ(feeds[1].data["type"], "date");
    EXPECT_EQ(feeds[2].data, (Dictionary{{"name", "ag"}, {"value", 36}, {"type", "number"}}));
    EXPECT_TRUE(feeds[0].shouldFeed);
    EXPECT_EQ(attributes()["na"], "Ada");
    enterBackground();
    EXPECT_THAT(attributes(), IsEmpty());
    EXPECT_EQ(attribute_codes::longNameOf("uuid"), "unique_user_id");
    EXPECT_EQ(attribute_codes::longNameOf("na"), "na");
}

TEST_F(UserAttributesTest, RefusesWhatIsOutOfItsRange) {
    for (const int age : {0, -1, 1000}) user().setAge(age);
    user().setBirthday(std::nullopt).setName(nullptr).setEmail(nullptr).setPhoneNumber(nullptr);
    EXPECT_THAT(sinks.messages({"set"}), IsEmpty());
    user().setEmail("ada@example").setPhoneNumber("441234567").setPhoneNumber("+0441234");
    EXPECT_THAT(sinks.messages({"set"}), ElementsAre("setEmail method called with an invalid email.",
                                                     "setPhoneNumber method called with an invalid phone number.",
                                                     "setPhoneNumber method called with an invalid phone number."));
    EXPECT_EQ(sinks.records().back().type, LogType::attributes);
    EXPECT_EQ(sinks.records().back().customAttributes, Dictionary());
    EXPECT_THAT(attributes(), IsEmpty());
    EXPECT_EQ((user().setAge(999), attributes()["ag"]), 999);
    for (const auto& [code, name] : {std::pair{0, "male"}, {1, "female"}, {7, "other"}, {-1, "other"}}) {
        user().setGender(code);
        EXPECT_EQ(attributes()["ge"], name);
    }
}

TEST_F(UserAttributesTest, CustomAttributesKeepTheirRangesOnlyOneByOne) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    auto someone = user();
    for (const int none : {0, 100'000'000}) someone.setCustomAttributeWithInt("none", none);
    for (const double none : {nan, std::numeric_limits<double>::infinity()}) {
        someone.setCustomAttributeWithDouble("none", none);
    }
    someone.setCustomAttributeWithString("none", "").setCustomAttributeWithDate("none", std::nullopt);
    someone.setCustomAttributeWithString("Capital", "x").setCustomAttributeWithInt("most", 99'999'999);
    someone.setCustomAttributeWithDouble("less", -0.5).setCustomAttributeWithBoolean("flag", false);
    someone.setCustomAttributeWithDate("day", Date{0}).setCustomAttributeWithArray("list", {"a", 1, Null{}, "b"});
    EXPECT_EQ(customAttributes(), (Dictionary{{"most", 99'999'999},
                                              {"less", -0.5},
                                              {"flag", false},
                                              {"day", world().helper.getRFCFromNSDate(Date{0})},
                                              {"list", Array{"a", "b"}}}));
    EXPECT_THAT(sinks.feeds("isNameValid"), SizeIs(1));
    EXPECT_THAT(sinks.feeds("setCustomAttribute"), SizeIs(5));

    const Dictionary many{{"zero", 0},   {"wide", std::int64_t{1} << 40}, {"text", "t"},
                          {"empty", ""}, {"deep", Dictionary{}},          {"null", Null{}},
                          {"Bad", 1}};
    world().userAttributes.setCustomAttributes(many);
    EXPECT_THAT(customAttributes(), SizeIs(8));
    EXPECT_EQ(customAttributes()["zero"], 0);
    EXPECT_NE(customAttributes()["wide"].ifReal(), nullptr);
    EXPECT_THAT(sinks.feeds("isNameValid"), SizeIs(2));
}

TEST_F(UserAttributesTest, WhatIsUnsetAndSetAgainIsBothPresentAndRemoved) {
    auto someone = user();
    someone.setCustomAttributeWithString("tier", "gold").unsetCustomAttribute("tier").unsetCustomAttribute("tier");
    EXPECT_THAT(customAttributes(), IsEmpty());
    someone.unsetCustomAttribute("other").unsetCustomAttribute("Bad").setCustomAttributeWithString("tier", "new");
    EXPECT_EQ(sinks.feeds("unsetCustomAttribute").at(0).data, (Dictionary{{"value", "tier"}}));
    runSession([] {});
    EXPECT_EQ(backend.stops().at(0).payload["custom_attributes"], (Dictionary{{"tier", "new"}}));
    EXPECT_EQ(backend.stops().at(0).payload["removed_attributes"], (Array{"tier", "other"}));
    runSession([] {});
    EXPECT_FALSE(backend.stops().at(1).payload.contains("removed_attributes"));
}

TEST_F(UserAttributesTest, AskingForTheUserBeginsAnewUnlessAConsentIsWithheld) {
    const auto sizes = [this] {
        return std::vector{attributes().size(), customAttributes().size(),
                           world().userAttributes.getRemovedAttributes().size()};
    };
    Orbinel::getCurrentUser().setName("Ada").setCustomAttributeWithInt("visits", 3).unsetCustomAttribute("tier");
    world().helper.setSessionGdprConsent(false);
    (void)Orbinel::getCurrentUser();
    EXPECT_THAT(sizes(), ElementsAre(1, 1, 1));
    world().helper.setSessionGdprConsent(true);
    (void)Orbinel::getCurrentUser();
    EXPECT_THAT(sizes(), ElementsAre(0, 0, 0));
}

TEST_F(UserAttributesTest, OptInsAreKeptOnlyWhereTheDeviceAllows) {
    host.device->change([](platform::DeviceFacts& facts) { facts.locationAllowed = false; });
    user().setPushOptin(true).setLocationOptin(true);
    EXPECT_TRUE(stored(keys::pushEnabled).isAbsent());
    EXPECT_TRUE(stored(keys::locationEnabled).isAbsent());
    world().deviceAttributes.setPushEnabledInSettings(true);
    host.device->change([](platform::DeviceFacts& facts) { facts.locationAllowed = true; });
    user().setPushOptin(false).setLocationOptin(false);
    EXPECT_EQ(stored(keys::pushEnabled), false);
    EXPECT_EQ(stored(keys::locationEnabled), false);
    EXPECT_FALSE(world().deviceAttributes.isPushEnabled());
    EXPECT_EQ(sinks.feeds("setLocationOptIn").at(0).data, (Dictionary{{"value", false}}));
    EXPECT_TRUE(sinks.feeds("setPushOptIn").at(0).shouldFeed);
}

TEST_F(UserAttributesTest, AChainOnADeadLibraryIsHarmless) {
    auto someone = user();
    auto copy = someone;
    auto ids = identifiers();
    shutdown();
    copy.setName("x").setEmail("bad").setGender(0).setPushOptin(true).unsetCustomAttribute("x");
    copy.login(ids.addUserID("u").addCustomIdentifier("BAD", "v"), [](const std::string&) { FAIL(); });
    copy.logout();
    EXPECT_FALSE(copy.areIdentifiersAlreadyCached(ids));
    OrbinelUser(LibraryPart<const UserAccess>()).setName("x").setAge(3).logout();
}

// Whatever is set while sessions end is in exactly one of them.
TEST_F(UserAttributesTest, LosesNothingWhileStopsTakeWhatThreadsSet) {
    constexpr int threads = 4;
    constexpr int each = 2000;
    std::atomic<int> running{threads};
    std::vector<std::thread> setters;
    for (int number = 0; number < threads; ++number) {
        setters.emplace_back([&, number] {
            for (int i = 0; i < each; ++i) {
                const auto name = "t" + std::to_string(number) + "_" + std::to_string(i);
                user().setCustomAttributeWithInt(name, i + 1).unsetCustomAttribute("r" + name);
            }
            --running;
        });
    }
    std::multiset<std::string> set;
    std::size_t removed = 0;
    const auto take = [&] {
        const auto taken = world().userAttributes.takeAndResetUser();
        for (const auto& [name, value] : taken.custom_attributes) set.insert(name);
        removed += taken.removed_attributes.ifArray()->size();
    };
    while (running > 0) take();
    for (auto& setter : setters) setter.join();
    take();
    EXPECT_EQ(set.size(), std::size_t{threads * each});
    EXPECT_EQ(std::set<std::string>(set.begin(), set.end()).size(), set.size());
    EXPECT_EQ(removed, std::size_t{threads * each});
}

}  // namespace
}  // namespace orbinel::testing
