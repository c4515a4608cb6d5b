#include <algorithm>
#include <chrono>
#include <thread>

#include "tests/apps/backend_fixture.hpp"

// What a visit to the shop leaves behind, as the backend has seen it.

namespace {

using orbinel::test::start;
using orbinel::test::stop;
using orbinel::test::ToolProcess;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;

/// Every text under the key, however deep.
std::vector<std::string> textsOf(const rapidjson::Value& value, const char* key) {
    std::vector<std::string> texts;
    const auto add = [&](const rapidjson::Value& inner) {
        const auto more = textsOf(inner, key);
        texts.insert(texts.end(), more.begin(), more.end());
    };
    if (value.IsArray()) std::for_each(value.Begin(), value.End(), add);
    if (!value.IsObject()) return texts;
    for (const auto& member : value.GetObject()) {
        if (member.name == key && member.value.IsString()) texts.emplace_back(member.value.GetString());
        add(member.value);
    }
    return texts;
}

class VisitedShop : public orbinel::test::Backend {
protected:
    VisitedShop()
        : Backend(std::vector<std::string>{"--answers", ORBINEL_EXAMPLES "/backend/shop", "--templates",
                                           ORBINEL_EXAMPLES "/templates"}) {}

    [[nodiscard]] ToolProcess visit(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> words{"--endpoint", origin_, "--data-dir", (directory_.path() / "data").string()};
        words.insert(words.end(), more.begin(), more.end());
        return ToolProcess(std::move(words), {}, ORBINEL_SHOP);
    }

    /// The payloads that arrived at the path, in order.
    std::vector<const rapidjson::Value*> payloads(const std::string& path) {
        requests_ = received();
        std::vector<const rapidjson::Value*> found;
        for (const auto& request : requests_.GetArray()) {
            if (request["path"].GetString() == path) found.push_back(&request["payload"]);
        }
        return found;
    }

    rapidjson::Document requests_;
};

/// Width and height, as the head of a PNG file has them.
std::pair<int, int> sizeOf(const std::filesystem::path& picture) {
    std::ifstream file(picture, std::ios::binary);
    std::string head(24, '\0');
    file.read(head.data(), static_cast<std::streamsize>(head.size()));
    const auto number = [&](std::size_t at) {
        int value = 0;
        for (std::size_t i = at; i < at + 4; ++i) value = value * 256 + static_cast<unsigned char>(head[i]);
        return value;
    };
    return {number(16), number(20)};
}

TEST_F(VisitedShop, TellsTheBackendWhatThePersonDid) {
    const auto pictures = directory_.path() / "pictures";
    auto shop = visit({"--visit", pictures.string()});
    ASSERT_EQ(shop.wait(), 0) << shop.err();

    EXPECT_EQ(sizeOf(pictures / "01-home-phone.png"), std::pair(390, 844));
    EXPECT_EQ(sizeOf(pictures / "18-home-360.png"), std::pair(360, 740));
    EXPECT_EQ(sizeOf(pictures / "23-home-desktop.png"), std::pair(1200, 800));

    EXPECT_EQ(payloads(start).size(), 2u) << "one at the arrival, one at the login";
    const auto stops = payloads(stop);
    ASSERT_EQ(stops.size(), 2u);
    const auto before = textsOf(*stops[0], "event_name");
    EXPECT_THAT(before,
                AllOf(Contains("homepage_view"), Contains("product_detail_page_view"), Contains("item_added_to_cart"),
                      Contains("item_added_to_wishlist"), Contains("inapp_seen"), Contains("cart_page_view")));
    EXPECT_THAT(textsOf(*stops[0], "button"), ElementsAre("open_lamp"));
    EXPECT_THAT(textsOf((*stops[0])["abandoned_items"], "product_id"), ElementsAre("mug-blue", "lamp-desk"));
    const auto after = textsOf(*stops[1], "event_name");
    EXPECT_THAT(after, AllOf(Contains("checkout_done"), Contains("survey_answered")));
    EXPECT_THAT(textsOf((*stops[1])["purchased_items"], "product_id"), ElementsAre("mug-blue", "lamp-desk"));
    EXPECT_THAT(textsOf((*stops[1])["survey_results"], "answer"), ElementsAre("5", "Quality"));
}

// Whoever closes the shop, or has it closed, loses nothing of the session.
TEST_F(VisitedShop, ClosesItsSessionWhenItIsEnded) {
    auto shop = visit();
    while (payloads(start).empty()) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ASSERT_EQ(payloads(start).size(), 1u);
    shop.signal(SIGTERM);
    EXPECT_EQ(shop.wait(), 0) << shop.err();
    const auto stops = payloads(stop);
    ASSERT_EQ(stops.size(), 1u);
    EXPECT_THAT(textsOf(*stops[0], "event_name"), Contains("homepage_view"));
}

}  // namespace
