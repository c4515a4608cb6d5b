#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "shop/model/cart.hpp"
#include "shop/model/preferences.hpp"
#include "tests/linux/temporary_directory.hpp"

namespace shop {

namespace {

class CartOfSomebody : public testing::Test {
protected:
    Catalogue catalogue;
    Cart cart{catalogue};
    Terms terms;
};

TEST_F(CartOfSomebody, ComesToWhatTheTermsOfTheDaySay) {
    EXPECT_EQ(cart.totals(terms).total, Money{0}) << "nothing is delivered, nothing is charged";
    cart.add("mug-blue", 3);    // 9.50 each, in the sale
    cart.add("bowl-white", 1);  // 14.00, never reduced
    EXPECT_EQ(cart.totals(terms).goods, Money{4250});
    EXPECT_EQ(cart.totals(terms).total, Money{4740});
    EXPECT_EQ(cart.totals(terms).untilFreeDelivery, Money{750});
    terms.saleIsOn = true;
    terms.freeDeliveryFrom = {3680};
    const auto totals = cart.totals(terms);
    EXPECT_EQ(totals.goods, Money{3680});
    EXPECT_EQ(totals.saved, Money{570});
    EXPECT_EQ(totals.delivery, Money{0}) << "from that amount on, not only above it";
    EXPECT_EQ(totals.total, totals.goods);
}

TEST_F(CartOfSomebody, TakesOnlyWhatIsSoldAndFitsIntoAParcel) {
    EXPECT_FALSE(cart.add("unheard-of"));
    EXPECT_FALSE(cart.add("mug-blue", 0));
    EXPECT_TRUE(cart.add("mug-blue", Cart::mostOfOne));
    EXPECT_FALSE(cart.add("mug-blue", 1));
    EXPECT_EQ(cart.itemCount(), Cart::mostOfOne);
    cart.setQuantity("mug-blue", -5);
    EXPECT_EQ(cart.itemCount(), 1);
    cart.remove("mug-blue");
    EXPECT_TRUE(cart.lines().empty());
}

TEST(Amounts, AreRoundedHalfUpAndWrittenToTheCent) {
    EXPECT_EQ(Money{4990}.reducedBy(20), Money{3992});
    EXPECT_EQ(Money{1}.reducedBy(50), Money{1});
    EXPECT_EQ(Money{1205}.text(), "12.05\u00a0€");
    EXPECT_EQ(Money{-5}.text(), "−0.05\u00a0€");
}

TEST(WhatThePersonDecided, OutlivesTheLaunchAndADamagedFile) {
    const orbinel::hosts::TemporaryDirectory directory;
    const auto file = directory.path() / "new" / "preferences.ini";
    EXPECT_TRUE(Preferences::read(file).consent);
    Preferences decided;
    decided.person = {"Ada=\n[x]", "ada@shop.example"};
    decided.consent = false;
    decided.collectAdvertisingId = true;
    decided.write(file);
    const auto read = Preferences::read(file);
    EXPECT_EQ(read.person.name, decided.person.name);
    EXPECT_FALSE(read.consent);
    EXPECT_TRUE(read.collectAdvertisingId);
    std::ofstream(file) << "[shop]\nconsent=perhaps\nconsent-on-device=false\n";
    EXPECT_TRUE(Preferences::read(file).consent);
    EXPECT_FALSE(Preferences::read(file).consentOnDevice);
}

TEST(Addresses, AreRecognised) {
    for (const auto* text : {"a@b.c", "ada.l@mail.shop.example"}) EXPECT_TRUE(looksLikeEmail(text)) << text;
    for (const auto* text : {"", "@b.c", "a@b", "a@.c", "a@b.", "a b@c.d", "a.b"}) {
        EXPECT_FALSE(looksLikeEmail(text)) << text;
    }
}

}  // namespace

}  // namespace shop
