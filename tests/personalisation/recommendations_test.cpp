#include "commerce/shop.hpp"
#include "personalisation/recommendation_url.hpp"
#include "personalisation/smart_recommendations.hpp"

namespace orbinel::testing {
namespace {

class RecommendationTest : public LibraryTest {
protected:
    RecommendationTest() { initialise(); }

    /// Asks, and gives the answers that the application got.
    std::vector<Dictionary> ask(std::int32_t id) {
        std::vector<Dictionary> answers;
        recommendation.getSmartRecommendationWithID(id, "en", "EUR", [&](const auto& one) { answers.push_back(one); });
        host.settle();
        return answers;
    }
    std::string lastUrl() {
        host.settle();
        const auto sent = host.http->sent();
        return sent.empty() ? "" : sent.back().url;
    }
    /// What was logged: "action id", in order.
    std::vector<std::string> logged() {
        std::vector<std::string> all;
        for (const auto& one : record().recommendation_logs) {
            const auto& log = *one.ifDictionary();
            all.push_back(log["action"].stringOrEmpty() + " " + std::to_string(*log["recommendation_id"].integer()));
        }
        return all;
    }

    Shop shop{world()};
    OrbinelRecommendationLogger& logger = world().recommendationLogger;
    OrbinelRecommendation& recommendation = world().recommendations;
    const OrbinelProduct shoe = shop.product("shoe", {"Shoes", "Sport"});
    const Dictionary withProducts{{"data", Array{1}}};
};

TEST_F(RecommendationTest, FillsTemplatesFromTheSessionStart) {
    backend.answer(
        "/session/start",
        {200, R"({"smart_recommendations": {"1": "http://r/{language}/{currency}/{category}/{productID}?100%25",
        "2": "http://r/?[category][=][{category}]", "3": 7, "4": ""}})"});
    becomeActive();
    EXPECT_EQ(recommendation.getRecommendationEndpoint(1, "tr TR\xFF", "USD", &shoe),
              "http://r/tr%20TR%FF/EUR/[%22Shoes%22,%22Sport%22]/shoe?100%25");
    EXPECT_EQ(recommendation.getRecommendationEndpoint(1, "en", "USD", nullptr),
              "http://r/en/USD/%7Bcategory%7D/%7BproductID%7D?100%25");
    EXPECT_EQ(recommendation.getRecommendationEndpoint(2, "en", "USD", &shoe),
              "http://r/?[category][=][Shoes]*[category][=][Sport]");
    for (const auto id : {3, 4, 5, -1})
        EXPECT_EQ(recommendation.getRecommendationEndpoint(id, "en", "USD", nullptr), "");

    backend.answer("/session/start", {200, "{}"});
    enterBackground();
    becomeActive();
    EXPECT_EQ(recommendation.getRecommendationEndpoint(1, "en", "USD", nullptr), "");
}

TEST_F(RecommendationTest, TemplatesSurviveARelaunch) {
    backend.answer("/session/start", {200, R"({"smart_recommendations": {"1": "http://r/{currency}"}})"});
    becomeActive();
    relaunch();
    initialise();
    world().recommendations.getSmartRecommendationWithID(1, "en", "EUR", {});
    EXPECT_EQ(lastUrl(), "http://r/EUR");
}

TEST(RecommendationUrlTest, ExpandsExactlyTheFilterSegments) {
    using recommendation_url::checkCategoryFilter;
    const Array two{"A", 3, "{category}"};
    EXPECT_EQ(checkCategoryFilter("x[CATEGORY][!=é][{category}]y[category][=][{category}]", two),
              "x[CATEGORY][!=é][A]*[CATEGORY][!=é][{category}]y[category][=][A]*[category][=][{category}]");
    EXPECT_EQ(
        checkCategoryFilter("x[category][][{category}][category][====][{category}][category][\n][{category}]", two),
        "x[category][][{category}][category][====][{category}][category][\n][{category}]");
    EXPECT_EQ(checkCategoryFilter("[category][category][=][{category}]", {"A"}), "[category][category][=][A]");
    EXPECT_EQ(checkCategoryFilter("x[category][=][{category}]y", {}), "xy");
    EXPECT_EQ(checkCategoryFilter("[category][=][{CATEGORY}]", {"A", "B"}),
              "[category][=][{CATEGORY}]*[category][=][{CATEGORY}]");
    EXPECT_EQ(checkCategoryFilter("[category][]]][{category}]", {"A"}), "[category][]]][A]");

    std::string hostile;
    for (int i = 0; i < 50'000; ++i) hostile += "[category][";
    EXPECT_EQ(checkCategoryFilter(hostile, two), hostile);
    std::string growing;
    for (int i = 0; i < 1000; ++i) growing += "[category][=][{category}]";
    EXPECT_THROW(static_cast<void>(checkCategoryFilter(growing, {std::string(5000, 'x')})), std::length_error);
}

TEST_F(RecommendationTest, ChecksArgumentsBeforeItAsks) {
    recommendation.storeEndpoints({{"1", "http://r/{productID}/{currency}"}});
    const auto never = [](const Dictionary&) { ADD_FAILURE(); };
    recommendation.getSmartRecommendationWithID(1, "", "EUR", never);
    recommendation.getSmartRecommendationWithID(1, "en", nullptr, never);
    recommendation.getSmartRecommendationWithProduct({}, 1, "en", never);
    recommendation.getSmartRecommendationWithProductIDs({"", 5}, 1, "en", "EUR", never);
    recommendation.getSmartRecommendationWithProductIDs({"a"}, 1, "en", "", never);
    EXPECT_EQ(lastUrl(), "");
    const auto refused = sinks.feeds("getSmartRecommendation");
    ASSERT_THAT(refused, SizeIs(2));
    EXPECT_EQ(refused[1].data, (Dictionary{{"recommendationID", 1},
                                           {"locale", "en"},
                                           {"currency", ""},
                                           {"warning", "All the parameters should have value."}}));
    EXPECT_FALSE(refused[1].shouldFeed);
    EXPECT_EQ(sinks.feeds("getSmartRecommendationWithProduct")[0].data["warning"],
              "All the parameters should have value and product should be valid.");
    EXPECT_THAT(sinks.feeds("createNewProduct"), SizeIs(1));  // the fixture's

    recommendation.getSmartRecommendationWithProductIDs({"a", "", "b", "c", "d"}, 1, "en", "EUR", {});
    EXPECT_EQ(lastUrl(), "http://r/a,b,c/EUR");
    recommendation.getSmartRecommendationWithProduct(shoe, 1, "en", {});
    EXPECT_EQ(lastUrl(), "http://r/shoe/EUR");
    const auto request = host.http->sent().back();
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.headers, (platform::HttpHeaders{{"X-Requested-With", "acme"}}));
    EXPECT_EQ(request.timeout, std::chrono::milliseconds(2000));
}

TEST_F(RecommendationTest, AnswersOnceOrNotAtAll) {
    recommendation.storeEndpoints({{"1", "http://r/one"}, {"2", "no url"}, {"0", "http://r/zero"}});
    backend.answer("one", {200, R"({"data": [{"id": 1}]})"});
    EXPECT_THAT(ask(1), ElementsAre(Dictionary{{"data", Array{Dictionary{{"id", 1}}}}}));
    EXPECT_THAT(logged(), ElementsAre("view 1"));
    EXPECT_EQ(record().recommendation_logs[0], (Value(Dictionary{{"recommendation_id", 1}, {"action", "view"}})));
    EXPECT_EQ(record().custom_events.back().event_name, "mobile_recommendation_log");
    EXPECT_EQ(record().custom_events.back().event_params->snapshot(),
              (Dictionary{{"recommendation_id", 1}, {"action", "view"}, {"request_url", "http://r/one"}}));
    EXPECT_THAT(ask(9), ElementsAre(Dictionary()));

    const std::vector<std::pair<Scripted, std::string>> failures{{{404, "{}"}, "HTTP error 404"},
                                                                 {{204, std::nullopt}, "HTTP error 204"},
                                                                 {{std::nullopt}, "The connection broke."},
                                                                 {{200, "[1]"}, "The answer is not a dictionary."},
                                                                 {{200, "{"}, ""}};
    for (const auto& [answer, error] : failures) {
        backend.answer("one", answer);
        EXPECT_THAT(ask(1), IsEmpty());
        EXPECT_TRUE(sinks.feeds("getSmartRecommendation").back().isError);
        EXPECT_THAT(sinks.feeds("getSmartRecommendation").back().data["error"].stringOrEmpty(), HasSubstr(error));
    }
    EXPECT_THAT(ask(2), IsEmpty());
    EXPECT_EQ(sinks.feeds("getSmartRecommendation").back().data["error"], "Invalid URL");
    backend.answer("one", {200, "{}", {}, true});
    std::size_t late = 0;
    recommendation.getSmartRecommendationWithID(1, "en", "EUR", [&](const auto&) { ++late; });
    host.advance(3);
    EXPECT_EQ(late, 0U);
    EXPECT_THAT(ask(0), SizeIs(1));
    EXPECT_THAT(logged(), ElementsAre("view 1"));
}

TEST_F(RecommendationTest, FollowsAProductFromItsClickToItsSale) {
    recommendation.storeEndpoints({{"3", "http://r/3"}, {"5", "http://r/5"}, {"7", "http://r/7"}});
    for (const auto* path : {"r/3", "r/7"}) backend.answer(path, {200, R"({"data": {"a": 1}})"});
    backend.answer("r/5", {200, R"({"data": []})"});
    auto clicked = shoe;
    clicked.setGroupCode("g");
    logger.clickSmartRecommendationProductWithID(3, clicked);  // not asked for yet
    static_cast<void>(ask(5));
    static_cast<void>(ask(7));
    bool inCallback = false;
    recommendation.getSmartRecommendationWithID(3, "en", "EUR", [&](const auto&) {
        logger.clickSmartRecommendationProductWithID(3, clicked);
        inCallback = true;
        throw std::runtime_error("the application's own");
    });
    host.settle();
    EXPECT_TRUE(inCallback);
    logger.clickSmartRecommendationProductWithID(7, clicked);
    logger.clickSmartRecommendationProductWithID(5, clicked);
    logger.clickSmartRecommendationProductWithID(0, clicked);
    logger.clickSmartRecommendationProductWithID(7, OrbinelProduct());
    shop.cart.itemAddedToCart(clicked);
    shop.cart.itemPurchased("sale", clicked);
    shop.cart.itemAddedToCart(shop.product("never clicked"));
    EXPECT_THAT(logged(), ElementsAre("view 5", "view 7", "view 3", "click 3", "click 7", "add_to_cart 3",
                                      "add_to_cart 7", "purchase 3", "purchase 7"));
    const auto purchase = *record().recommendation_logs.at(7).ifDictionary();
    EXPECT_EQ(purchase["product"], Value(clicked.getProductSummary()));
    EXPECT_EQ(purchase["product_id"], "shoe");
    EXPECT_EQ(purchase["taxonomy"], (Value(Array{"Shoes", "Sport"})));
    EXPECT_EQ(purchase["groupcode"], "g");

    const auto before = record().custom_events.size();
    host.settle();
    const auto events = record().custom_events;
    ASSERT_EQ(events.size(), before + 5);  // the click on 7, both carts and both purchases waited for the main queue
    EXPECT_EQ(events.back().event_params->snapshot()["action"], "purchase");
    EXPECT_EQ(events.back().event_params->snapshot()["e_guid"], "sale");

    becomeActive();
    enterBackground();
    shop.cart.itemAddedToCart(clicked);
    EXPECT_THAT(logged(), IsEmpty());
}

}  // namespace
}  // namespace orbinel::testing
