#include <set>
#include <thread>

#include "commerce/shop.hpp"

namespace orbinel::testing {
namespace {

class CommerceTest : public LibraryTest {
protected:
    Dictionary parametersOfLastEvent() { return record().custom_events.back().event_params->snapshot(); }
    std::vector<std::string> abandoned() {
        std::vector<std::string> ids;
        for (const auto& item : record().abandoned_items) {
            ids.push_back((*item.ifDictionary())["product_id"].stringOrEmpty());
        }
        return ids;
    }

    Shop shop{world()};
    const OrbinelProduct dummy = shop.product("sku", {});
};

TEST_F(CommerceTest, KeepsBooksOfTheCart) {
    const auto shoe = shop.product("shoe");
    shop.cart.itemRemovedFromCart("shoe");
    shop.cart.itemRemovedFromCart("hat");
    shop.cart.itemRemovedFromCart("");
    EXPECT_EQ(record().removed_items, (Array{"shoe", "hat"}));
    shop.cart.itemAddedToCart(shoe);
    shop.cart.itemAddedToCart(shoe);
    EXPECT_EQ(record().removed_items, (Array{"hat"}));
    EXPECT_THAT(abandoned(), ElementsAre("shoe"));
    EXPECT_EQ(parametersOfLastEvent(), shoe.getProductSummary());
    shop.cart.itemRemovedFromCart("shoe");
    EXPECT_THAT(record().abandoned_items, IsEmpty());
    EXPECT_EQ(record().removed_items, (Array{"hat"}));
    EXPECT_EQ(parametersOfLastEvent(), (Dictionary{{"pid", "shoe"}}));

    shop.cart.itemAddedToCart(shoe);
    shop.cart.cartCleared();
    EXPECT_THAT(record().abandoned_items, IsEmpty());
    EXPECT_THAT(record().removed_items, IsEmpty());
    EXPECT_EQ(sinks.feeds("itemAddedToCart")[0].data, shoe.getProductSummary());
    EXPECT_EQ(sinks.feeds("itemRemovedFromCart")[1].data, (Dictionary{{"value", "hat"}}));
    EXPECT_TRUE(sinks.feeds("cartCleared")[0].shouldFeed);
}

TEST_F(CommerceTest, APurchaseMarksItsProductAndEmptiesTheCart) {
    auto shoe = shop.product("shoe").setQuantity(2);
    const auto copy = shoe;
    shop.cart.itemAddedToCart(shop.product("hat"));
    shop.cart.itemRemovedFromCart("scarf");
    for (int i = 0; i < 120; ++i) shop.visits.visitHomepage();  // beyond the budget of ordinary events
    shop.cart.itemPurchased("sale-1", shoe);
    EXPECT_THAT(record().purchased_items, SizeIs(1));
    EXPECT_THAT(record().abandoned_items, IsEmpty());
    EXPECT_THAT(record().removed_items, IsEmpty());
    EXPECT_EQ(eventNames().back(), "confirmation_page_view");
    EXPECT_EQ(parametersOfLastEvent()["e_guid"], "sale-1");
    EXPECT_EQ(shoe.getProductSummary()["e_guid"], "sale-1");
    EXPECT_FALSE(copy.getProductSummary().contains("e_guid"));
    EXPECT_EQ(sinks.feeds("itemPurchased")[0].data, shoe.getProductSummary());
    shop.cart.itemPurchased(nullptr, shop.product("hat", {"", 1, "b"}));
    EXPECT_EQ((*record().purchased_items[1].ifDictionary())["category"], "[, b]");
}

TEST_F(CommerceTest, RefusesProductsThatAreNotValid) {
    shop.cart.itemAddedToCart(dummy);
    shop.cart.itemPurchased("sale", OrbinelProduct());
    shop.wishlist.itemAddedToWishlist(dummy);
    shop.visits.visitProductDetailPage(dummy);
    shop.visits.visitListingPage({});
    shop.visits.visitCartPage({dummy});
    shop.visits.visitCartPage({});
    shop.wishlist.itemRemovedFromWishlist("");
    EXPECT_THAT(record().custom_events, IsEmpty());
    EXPECT_THAT(record().purchased_items, IsEmpty());
    EXPECT_THAT(sinks.messages({"The product"}),
                ElementsAre("The product used for the itemAddedToCart method is invalid.",
                            "The product used for the itemPurchased method is invalid.",
                            "The product used for the itemAddedToWishlist method is invalid."));
    const auto records = sinks.records();
    ASSERT_THAT(records, SizeIs(3));
    EXPECT_EQ(records[0].type, LogType::cartReminder);
    EXPECT_EQ(textOf(records[2].type), "");
    EXPECT_EQ(records[2].customAttributes, (Dictionary{{"product_id", ""}}));

    sinks.clear();
    const auto valid = shop.product("sku");
    world().helper.setSdkDisabled(true);
    shop.cart.itemAddedToCart(valid);
    shop.visits.visitHomepage();
    EXPECT_THAT(sinks.records(), SizeIs(2));  // the gate's own, one a call
    EXPECT_THAT(record().custom_events, IsEmpty());
    EXPECT_THAT(sinks.feeds("visitHomepage"), IsEmpty());
}

TEST_F(CommerceTest, FeedsTheWizardWithVisitsAndWishes) {
    const auto shoe = shop.product("shoe");
    shop.visits.visitListingPage({"a", 1, "b"});
    EXPECT_EQ(parametersOfLastEvent(), (Dictionary{{"ta", Array{"a", "b"}}}));
    shop.visits.visitProductDetailPage(shoe);
    EXPECT_EQ(parametersOfLastEvent(), shoe.getProductSummary());
    shop.visits.visitCartPage({shoe, dummy, shop.product("hat")});
    shop.wishlist.wishlistCleared();
    shop.wishlist.visitWishlist({dummy, shoe});
    EXPECT_EQ(sinks.feeds("visitListingPage")[0].data, (Dictionary{{"ta", Array{"a", 1, "b"}}}));
    EXPECT_EQ(sinks.feeds("visitProductDetailPage")[0].data, (Dictionary{{"value", "shoe"}}));
    EXPECT_THAT(sinks.feeds("visitCartPage;"), SizeIs(2));
    EXPECT_THAT(sinks.feeds("visitWishlist"), SizeIs(1));
    EXPECT_THAT(sinks.feeds("wishlistCleared"), SizeIs(1));
}

// A product is never in both lists, and never twice among the abandoned ones, whatever threads do.
TEST_F(CommerceTest, BooksStayTrueFromSeveralThreads) {
    std::vector<std::thread> people;
    for (int person = 0; person < 4; ++person) {
        people.emplace_back([&, person] {
            for (int i = 0; i < 200; ++i) {
                const auto id = std::to_string((i * (person + 1)) % 7);
                if ((i + person) % 3 == 0) {
                    shop.cart.itemRemovedFromCart(id);
                } else {
                    shop.cart.itemAddedToCart(shop.product(id));
                }
            }
        });
    }
    for (auto& person : people) person.join();
    const auto all = record();
    const auto ids = abandoned();
    EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()).size(), ids.size());
    for (const auto& id : ids) EXPECT_EQ(std::count(all.removed_items.begin(), all.removed_items.end(), Value(id)), 0);
}

}  // namespace
}  // namespace orbinel::testing
