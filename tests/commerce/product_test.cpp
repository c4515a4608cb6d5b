#include "orbinel/product.hpp"

#include <limits>

#include "commerce/shop.hpp"

namespace orbinel::testing {
namespace {

class ProductTest : public LibraryTest {
protected:
    Shop shop{world()};
    const Dictionary dummySummary{{"pid", ""}, {"na", ""}, {"ta", Array{""}}, {"piu", ""},
                                  {"up", 0.0}, {"cu", ""}, {"qu", 0}};
};

TEST_F(ProductTest, LackingARequiredFieldIsADummyThatTakesNothing) {
    const Array taxonomy{"a"};
    const Array empty;
    const double infinity = std::numeric_limits<double>::infinity();
    const std::vector<RequiredProductFields> lacking{{"", "n", taxonomy, "u", 1, "EUR"},
                                                     {nullptr, "n", taxonomy, "u", 1, "EUR"},
                                                     {"i", "", taxonomy, "u", 1, "EUR"},
                                                     {"i", "n", empty, "u", 1, "EUR"},
                                                     {"i", "n", taxonomy, nullptr, 1, "EUR"},
                                                     {"i", "n", taxonomy, "u", -0.01, "EUR"},
                                                     {"i", "n", taxonomy, "u", infinity, "EUR"},
                                                     {"i", "n", taxonomy, "u", std::nan(""), "EUR"},
                                                     {"i", "n", taxonomy, "u", 1, ""}};
    for (const auto& fields : lacking) {
        auto product = shop.creation.createNewProductWithID(fields).setName("late").setCustomAttributeWithInt("n", 1);
        EXPECT_FALSE(product.isProductValid());
        EXPECT_EQ(product.getProductSummary(), dummySummary);
    }
    ASSERT_THAT(sinks.feeds("createNewProduct"), SizeIs(lacking.size()));
    EXPECT_EQ(sinks.feeds("createNewProduct")[0].data, dummySummary);

    EXPECT_TRUE(shop.product("free", {"a"}, 0).isProductValid());
    OrbinelProduct none;
    none.setName("late").setStock(3);
    EXPECT_FALSE(none.isProductValid());
    EXPECT_EQ(none.getProductSummary(), Dictionary());
    EXPECT_EQ(none.getName(), "");
    EXPECT_EQ(none.getQuantity(), 0);
}

TEST_F(ProductTest, KeepsFieldsWithinTheirLimits) {
    host.scheduler->setTimeZone("Europe/Istanbul");
    auto product = shop.product("sku").setSaleID("s1").setColor("red").setSize("M").setVoucherName("v");
    product.setPromotionName("p").setGroupCode("").setSalePrice(0).setShippingCost(2.5).setVoucherDiscount(1);
    product.setPromotionDiscount(0.5).setStock(99'999'999).setQuantity(999).setInStock(false);
    const auto kept = product.getProductSummary();
    EXPECT_THAT(kept, SizeIs(19));
    EXPECT_EQ(kept["piu"], "https://img/sku");
    EXPECT_EQ(kept["groupcode"], "");
    EXPECT_EQ(kept["usp"], 0.0);
    EXPECT_EQ(kept["st"], 99'999'999);
    EXPECT_EQ(kept["qu"], 999);
    EXPECT_EQ(kept["iis"], false);

    product.setSaleID("").setProductID(nullptr).setName("").setTaxonomy({}).setProductImageURL("").setCurrency("");
    product.setColor("").setSize("").setVoucherName("").setPromotionName("").setGroupCode(nullptr);
    product.setUnitPrice(-1).setSalePrice(std::nan("")).setShippingCost(-0.1).setVoucherDiscount(-2);
    product.setPromotionDiscount(std::numeric_limits<double>::infinity());
    product.setStock(0).setStock(100'000'000).setQuantity(0).setQuantity(1000).setQuantity(-1);
    product.setCustomAttributeWithString("text", "").setCustomAttributeWithString("Bad", "x");
    product.setCustomAttributeWithDouble("d", std::nan("")).setCustomAttributeWithDate("t", std::nullopt);
    EXPECT_EQ(product.getProductSummary(), kept);
    EXPECT_THAT(sinks.feeds("isNameValid"), SizeIs(1));

    product.setCustomAttributeWithString("text", "x").setCustomAttributeWithDate("t", Date{begin});
    EXPECT_EQ(product.getCustomAttributeDate("t"), "2026-01-01T03:00:00.000Z");
    EXPECT_EQ(product.getCustomAttributeInt("text"), std::nullopt);

    product.setCustomAttributeWithString("pid", "other").setCustomAttributeWithBoolean("ta", true);
    EXPECT_EQ(product.getProductID(), "other");
    EXPECT_EQ(product.getTaxonomy(), Array());
}

TEST_F(ProductTest, CopiesAreTheirOwnAndNeedTheLibraryOnlyForChanges) {
    auto product = shop.product("sku");
    auto copy = product;
    copy.setName("copy");
    EXPECT_EQ(product.getName(), "Name sku");
    product = copy;
    product.setName("again");
    EXPECT_EQ(copy.getName(), "copy");
    const auto moved = std::move(copy);
    EXPECT_FALSE(copy.isProductValid());  // NOLINT: what a moved-from product promises
    EXPECT_EQ(copy.setName("x").getName(), "");

    sinks.clear();
    world().helper.setSdkDisabled(true);
    EXPECT_FALSE(product.isProductValid());
    product.setName("closed");
    const auto closed = shop.product("sku2");
    EXPECT_EQ(closed.getProductSummary(), Dictionary());
    EXPECT_EQ(sinks.count("sdkDisabled is true."), 3U);
    world().helper.setSdkDisabled(false);
    EXPECT_FALSE(closed.isProductValid());
    EXPECT_EQ(product.getName(), "again");

    shutdown();
    EXPECT_FALSE(product.isProductValid());
    EXPECT_EQ(product.setName("late").getName(), "again");
}

}  // namespace
}  // namespace orbinel::testing
