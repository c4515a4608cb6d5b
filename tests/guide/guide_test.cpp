#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include "guide.hpp"
#include "orbinel/headless/headless_host.hpp"
#include "support/scripted_backend.hpp"

// README.md and the pages of docs/guide hold no code but what is compiled here, and that does what they say.
namespace orbinel::testing {

namespace {

using ::testing::Contains;

const std::filesystem::path root = ORBINEL_SOURCE_DIR;

/// Without indentation, so that a page may quote the inside of a function.
std::string linesOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    return std::regex_replace("\n" + text, std::regex("\n +"), "\n");
}

std::vector<std::string> codeOf(const std::filesystem::path& page) {
    std::vector<std::string> blocks;
    const auto text = linesOf(page);
    const std::regex block("\n```c(pp)?(\n[^`]*)```");
    for (std::sregex_iterator found(text.begin(), text.end(), block), end; found != end; ++found) {
        blocks.push_back((*found)[2]);
    }
    return blocks;
}

TEST(Guide, EveryPieceOfCodeOnThePagesIsPartOfAnExample) {
    auto examples = linesOf(root / "tests/gtk/c_start_test.c");
    for (const auto* folder : {"examples/guide", "examples/application"}) {
        for (const auto& file : std::filesystem::directory_iterator(root / folder)) examples += linesOf(file.path());
    }
    std::vector<std::filesystem::path> pages{root / "README.md"};
    for (const auto& page : std::filesystem::directory_iterator(root / "docs/guide")) pages.push_back(page.path());
    std::size_t blocks = 0;
    for (const auto& page : pages) {
        for (const auto& code : codeOf(page)) {
            ++blocks;
            EXPECT_NE(examples.find(code), std::string::npos) << page << " quotes what no example holds:" << code;
        }
    }
    EXPECT_GT(blocks, 10u);
}

class GuideExamples : public ::testing::Test {
protected:
    GuideExamples() {
        backend.answer("/session/start", {.body = R"({"smart_recommendations": {"1": "http://vendor.example/one"}})"});
        backend.answer("/consent/get", {.body = ""});
        backend.answer("/v3/get", {.body = "person-of-the-guide"});
        backend.answer("/one", {.body = R"({"data": [{"product_id": "mug-blue"}, {"product_id": "mug-red"}, 7]})"});
        EXPECT_TRUE(start(host.services()));
        Orbinel::setDevelopmentLog(true);
        Orbinel::initWithLaunchOptions(std::nullopt, "acme", "group.acme");
        host.notificationCentre->post(platform::notification_names::didBecomeActive, {});
        host.settle();
    }
    ~GuideExamples() override {
        shutdown();
        host.settle();
    }

    std::string console() const {
        std::string all;
        for (const auto& line : host.console->lines()) all += line + "\n";
        return all;
    }

    headless::HeadlessHost host;
    ScriptedBackend backend{host};
};

TEST_F(GuideExamples, AreToldWhatIsWrongWithAValue) {
    host.console->clear();
    Orbinel::tagEvent("search").addParameterWithString("words", "").addParameterWithInt("results", 0).build();
    Orbinel::getCurrentUser().setAge(0).setName("").setCustomAttributeWithInt("orders", -1).setBirthday(std::nullopt);
    Orbinel::createNewProductWithID("1", "Mug", {"Kitchen"}, "https://shop.example/1", 5, "EUR").setStock(0);
    for (const auto* sentence :
         {"Left out the parameter \"words\": a text must not be empty", "Left out the parameter \"results\"",
          "setAge] changed nothing: an age is 1 to 999.", "setName] changed nothing: the text is empty.",
          "an integer is 1 to 99999999", "as it was: no value was given.",
          "setStock] changed nothing: its value is empty or out of range."}) {
        EXPECT_THAT(console(), ::testing::HasSubstr(sentence));
    }
}

TEST_F(GuideExamples, DropNothingOfWhatTheyReport) {
    host.console->clear();
    guide::reportEvents();
    guide::describeUser();
    guide::reportShopping();
    EXPECT_FALSE(guide::useWhatThereIs());
    for (const auto* name : {"article_read", "search", "sign_up_confirmation"}) {
        EXPECT_THAT(console(), ::testing::HasSubstr(name));
    }
    for (const auto* refusal : {"Ignored", "Skipped", "refused", "invalid"}) {
        EXPECT_THAT(console(), ::testing::Not(::testing::HasSubstr(refusal)));
    }
}

TEST_F(GuideExamples, HearOfLinksBesideTheLibrary) {
    std::vector<std::string> opened;
    shutdown();
    guide::listenForLinks(host.services(), opened);
    ASSERT_TRUE(start(host.services()));
    Orbinel::initWithLaunchOptions(std::nullopt, "acme", "group.acme");
    platform::DelegateArguments link;
    link.url = "shop://connect_wizard/TOKEN";
    ASSERT_NE(host.application->delegate(), nullptr);
    host.application->delegate()->perform(platform::delegate_operations::openUrlWithOptions, link);
    EXPECT_THAT(opened, ::testing::ElementsAre("shop://connect_wizard/TOKEN"));
    host.settle();
    EXPECT_THAT(backend.paths(), Contains("/api/wizard/v1/init_new_integration"));
}

TEST_F(GuideExamples, RunFromLoginToErasure) {
    guide::respectPrivacy(true, false);
    guide::logIn();
    host.settle();
    EXPECT_EQ(Orbinel::getOrbinelID(), "person-of-the-guide");
    guide::logOut();
    EXPECT_EQ(guide::titleOfHomePage(), "Welcome");
    guide::askForPushes();
    guide::handOverPushes({1, 2}, {{"aps", Dictionary()}, {"source", "Orbinel"}});
    guide::handOverLinks("https://shop.example/sale");
    guide::keepMessagesAwayDuringCheckout(true);
    const auto engagement = std::make_shared<guide::Engagement>();
    guide::listenForMessages(engagement);
    engagement->onOrbinel({{"type", 5}, {"data", Dictionary{{"inapp_id", "7"}}}});
    EXPECT_THAT(engagement->shownMessages, Contains("7"));
    host.settle();

    std::string told;
    guide::eraseEverything(told);
    host.settle();
    EXPECT_EQ(told, "Everything is erased.");
    EXPECT_NE(Orbinel::getOrbinelID(), "person-of-the-guide");
}

TEST_F(GuideExamples, ReportTheRecommendedProductThatThePersonChose) {
    guide::showRecommendations(1);
    host.settle();
    host.notificationCentre->post(platform::notification_names::didEnterBackground, {});
    host.settle();
    const auto stops = backend.stops();
    ASSERT_EQ(stops.size(), 1u);
    const auto* logs = stops.front().payload["recommendation_logs"].ifArray();
    ASSERT_TRUE(logs != nullptr && !logs->empty() && logs->back().ifDictionary() != nullptr);
    const auto& click = *logs->back().ifDictionary();
    EXPECT_EQ(click["action"], "click");
    EXPECT_EQ(click["product_id"], "mug-blue");
}

TEST(GuideForTests, APurchaseIsSeenOverADeviceInMemory) { EXPECT_TRUE(guide::purchaseIsReported()); }

}  // namespace

}  // namespace orbinel::testing
