#include "orbinel/value.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "base/utf8.hpp"
#include "base/value_text.hpp"

namespace orbinel::testing {
namespace {

TEST(Values, CompareNumbersByValueAcrossKinds) {
    EXPECT_EQ(Value(7), Value(std::int64_t{7}));
    EXPECT_EQ(Value(7), Value(7.0));
    EXPECT_NE(Value(1), Value(true));
    constexpr std::int64_t big = 9'007'199'254'740'993;  // 2^53 + 1, which no double holds
    EXPECT_NE(Value(big), Value(9'007'199'254'740'992.0));
    EXPECT_NE(Value(std::numeric_limits<std::int64_t>::max()), Value(9'223'372'036'854'775'808.0));
    EXPECT_NE(Value(std::nan("")), Value(0));
    EXPECT_EQ(Value(1e300).integer(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(Value(std::nan("")).integer(), std::nullopt);
    EXPECT_EQ(Value(-2.9).integer(), -2);
    EXPECT_TRUE(Value(2).truth());
    EXPECT_FALSE(Value("true").truth());
}

TEST(Dictionaries, StayTheSameFromAFewKeysToMany) {
    Dictionary dictionary;
    for (int i = 0; i < 1000; ++i) dictionary.set("k" + std::to_string(i), i);
    dictionary.set("k500", "changed");
    EXPECT_TRUE(dictionary.erase("k0"));
    EXPECT_FALSE(dictionary.erase("k0"));
    EXPECT_EQ(dictionary.size(), 999U);
    EXPECT_EQ(dictionary["k500"], "changed");
    EXPECT_EQ(dictionary["k999"], 999);
    EXPECT_EQ(dictionary.begin()->first, "k1");
    const auto copy = dictionary;
    dictionary.eraseIf([](const Dictionary::Entry& entry) { return entry.first != "k7"; });
    EXPECT_EQ(dictionary, (Dictionary{{"k7", 7}}));
    EXPECT_EQ(copy.size(), 999U);
    auto moved = copy;
    const auto target = std::move(moved);
    EXPECT_EQ(target, copy);
    EXPECT_EQ((Dictionary{{"a", 1}, {"b", 2}}), (Dictionary{{"b", 2}, {"a", 1}}));
    EXPECT_NE((Dictionary{{"a", 1}}), (Dictionary{{"a", Null{}}}));
}

TEST(Values, BoundTheirDepthAndTheirText) {
    Value deep = 1;
    for (int level = 0; level < maximumValueDepth; ++level) deep = Array{std::move(deep)};
    EXPECT_TRUE(isWithinDepth(deep));
    EXPECT_FALSE(isWithinDepth(Value(Dictionary{{"k", deep}})));

    EXPECT_EQ(textOf(Value("a\nb")), "a\\nb");
    EXPECT_EQ(textOf(Dictionary{{"k", Array{1, "x", true, 7.0, 0.5, Null{}}}}), "{k: [1, \"x\", true, 7, 0.5, null]}");
    EXPECT_EQ(textOf(Value(std::string(100, 'x')), 10), "xxxxxxxxxx…");
    EXPECT_EQ(textOf(Value("aaaaaaaaa\xC3\xA4z"), 10), "aaaaaaaaa…");
    EXPECT_LT(textOf(deep, 100).size(), 110U);
}

TEST(Utf8, IsCheckedToTheLetter) {
    for (const char* good :
         {"", "abc", "\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xEF\xBF\xBF", "12345678\xC3\xA4"}) {
        EXPECT_TRUE(isValidUtf8(good)) << good;
    }
    for (const char* bad : {"\x80", "\xC3", "\xC0\xAF", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                            "\xF5\x80\x80\x80", "12345678\xFF", "\xE2\x82"}) {
        EXPECT_FALSE(isValidUtf8(bad)) << bad;
    }
    EXPECT_TRUE(isAscii("12345678x"));
    EXPECT_FALSE(isAscii("12345678\x80"));
}

}  // namespace
}  // namespace orbinel::testing
