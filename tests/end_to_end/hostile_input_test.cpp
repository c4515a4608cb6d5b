#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "tests/end_to_end/linux_library.hpp"
#include "tests/linux/temporary_directory.hpp"

// Whatever an application hands over, the session goes on and arrives.
namespace orbinel::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

const std::string megabyte(1024 * 1024, 'm');
const std::string broken = "caf\xC3 \xFF\xED\xA0\x80";
const std::string mended = "caf\xEF\xBF\xBD \xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD";

Value nested(int depth) {
    Value value = Array{};
    for (int i = 0; i < depth; ++i) {
        Array outer;
        outer.push_back(std::move(value));
        value = std::move(outer);
    }
    return value;
}

/// Of every kind, in containers too, the unacceptable among it.
Dictionary everything() {
    Dictionary all{{"text", megabyte},
                   {"broken", broken},
                   {"not_a_number", std::numeric_limits<double>::quiet_NaN()},
                   {"nothing", Value()},
                   {"null", Null{}},
                   {"deep", nested(2'000)},
                   {"dictionary", Dictionary{{"inside", 1}}},
                   {"list", Array{1, "one", Null{}, nested(2'000)}},
                   {"Not A Name", 1}};
    for (int i = 0; i < 1'000; ++i) all.set("key_" + std::to_string(i), i);
    return all;
}

void handOverEverything() {
    Orbinel::tagEvent("inapp_seen").addParameters(everything()).addParameterWithInt(sessionNumber, 1).build();
    Orbinel::tagEvent(megabyte).addParameterWithString(megabyte, megabyte).build();
    Orbinel::tagEvent(broken).build();
    auto user = Orbinel::getCurrentUser();
    user.setName(megabyte).setSurname(broken).setEmail(megabyte).setPhoneNumber(broken);
    user.setCustomAttributeWithArray("list", Array{1, broken, nested(2'000)}).unsetCustomAttribute(megabyte);
    user.setCustomAttributeWithDouble("infinite", std::numeric_limits<double>::infinity());
    auto product = Orbinel::createNewProductWithID(broken, megabyte, {1, nested(2'000), broken}, broken, 1, broken);
    product.setCustomAttributeWithArray("list", Array{nested(2'000)}).setQuantity(-1);
    Orbinel::itemPurchasedWithSaleID(broken, product);
    Orbinel::itemRemovedFromCartWithProductID(megabyte);
    Orbinel::visitListingPageWithTaxonomy({broken, nested(2'000)});
    EXPECT_EQ(Orbinel::getContentStringWithName(megabyte, broken, OrbinelVariableTypeContent), broken);
    Orbinel::getSmartRecommendationWithID(std::numeric_limits<std::int32_t>::min(), broken, megabyte, {});
    Orbinel::getMessageCenterDataWithLimit(-1, Date{-1e300}, Date{1e300}, {});
    Orbinel::handleUrl(broken);
    user.login(OrbinelIdentifiers().addUserID(broken).addCustomIdentifier(broken, broken));
}

/// Of the first event of that name.
Dictionary parametersOf(const Dictionary& stop, std::string_view name) {
    for (const auto& event : *stop["custom_events"].ifArray()) {
        if ((*event.ifDictionary())["event_name"] == name)
            return *(*event.ifDictionary())["event_params"].ifDictionary();
    }
    return {};
}

TEST(HostileInput, ArrivesMendedAndCostsNothingElse) {
    hosts::TemporaryDirectory directory;
    LoopbackBackend backend;
    LinuxLibrary library(directory.path(), backend.origin);
    ASSERT_NO_FATAL_FAILURE(library.launch());
    library.becomeActive();
    ASSERT_TRUE(library.runUntil([&] { return library.network->starts > 0 && library.network->underWay == 0; }));
    handOverEverything();
    ASSERT_TRUE(library.runUntilQuiet());
    library.enterBackground();
    ASSERT_TRUE(library.runUntil([&] { return library.network->stops > 0 && library.network->underWay == 0; }));
    ASSERT_NO_FATAL_FAILURE(library.runSession(2));

    EXPECT_THAT(backend.takenNumbers(), ElementsAre(1, 2));
    const auto arrivals = backend.arrivals();
    const auto stop =
        std::find_if(arrivals.begin(), arrivals.end(), [](const auto& one) { return one.path == stopPath; });
    ASSERT_NE(stop, arrivals.end());
    const auto parameters = parametersOf(stop->payload, "inapp_seen");
    EXPECT_EQ(parameters["text"], megabyte);
    EXPECT_EQ(parameters["broken"], mended);
    EXPECT_EQ(parameters["list"], Array{"one"});
    EXPECT_EQ(parameters["key_0"], 0);
    EXPECT_FALSE(parameters.contains("not_a_number"));
    EXPECT_FALSE(parameters.contains("dictionary"));
    EXPECT_THAT(parameters, SizeIs(1'000 + 5));  // text, broken, deep, list and the session's number
    const auto& user = *stop->payload["user_attributes"].ifDictionary();
    EXPECT_EQ(user["na"], megabyte);
    EXPECT_EQ(user["su"], mended);
    EXPECT_EQ((*stop->payload["custom_attributes"].ifDictionary())["list"], Array{mended});
    EXPECT_EQ(*stop->payload["removed_items"].ifArray(), Array{megabyte});
}

}  // namespace

}  // namespace orbinel::testing
