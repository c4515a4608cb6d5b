#include "inapp/condition_matching.hpp"

#include <gtest/gtest.h>

#include <cmath>

#include "inapp/lower_case.hpp"

namespace orbinel::testing {
namespace {

bool meets(const Value& actual, const char* op, const Value& value) {
    return checkIfParamsAreMatching({{"k", actual}}, Array{Dictionary{{"key", "k"}, {"op", op}, {"value", value}}});
}

TEST(ConditionMatching, EveryOperatorTakesItsTypes) {
    struct Case {
        const char* op;
        Value actual;
        Value value;
        bool expected;
    };
    const Array list{Value("red")};
    // clang-format off
    const std::vector<Case> cases{
        {"eq", "Red", "Red", true}, {"eq", "Red", "red", false}, {"eq", 3, 3.0, true},
        {"eq", std::int64_t{3}, 3, true}, {"eq", "3", 3, false}, {"eq", true, 1, true}, {"eq", 0, false, true},
        {"eq", list, list, false}, {"eq", 3, Value(), false}, {"ne", "Red", "red", true}, {"ne", 3, 3.0, false},
        {"ne", true, 0, true}, {"ne", list, "red", false}, {"ne", 3, Value(), true},
        {"ne", Date{1}, "red", false}, {"cnt", "Sommerkleid", "KLEID", true}, {"cnt", "İÇECEK", "çecek", true},
        {"cnt", "ΣΊΣΥΦΟΣ", "σίσυφο", true}, {"cnt", "Шапка", "ШАПКА", true}, {"cnt", "shirt", "skirt", false},
        {"cnt", 33, "3", false}, {"dnc", "shirt", "skirt", true}, {"dnc", "Shirt", "sHI", false},
        {"dnc", 33, "4", false}, {"dnc", "33", 4, false}, {"gte", 100, 100, false}, {"gte", 100.5, 100, true},
        {"gt", 100, 100, true}, {"gt", 99, 100.0, false}, {"lte", 100, 100, false},
        {"lte", 99, std::int64_t{100}, true}, {"lt", 100, 100, true}, {"lt", 101, 100, false},
        {"gt", "100", 1, false}, {"gt", true, 0, false}, {"gt", 100, "99.5", true},
        {"gt", 100, "99 or so", false}, {"gt", 100, Value(), false}, {"gt", std::nan(""), 1, false},
        {"between", 5, 7, true}, {"", list, 7, true},
    };
    // clang-format on
    for (const auto& one : cases) EXPECT_EQ(meets(one.actual, one.op, one.value), one.expected) << &one - cases.data();
}

TEST(ConditionMatching, AllConditionsMustBeMetAndBadOnesNeverAre) {
    const Dictionary parameters{{"price", 10}, {"sku", "a1"}};
    const Dictionary met{{"key", "price"}, {"op", "eq"}, {"value", 10}};
    const Dictionary absent{{"key", "size"}, {"op", "between"}};
    for (const auto& everyEvent :
         {Value(), Value(Null()), Value(Array()), Value(Dictionary()), Value(Array{met, met})}) {
        EXPECT_TRUE(checkIfParamsAreMatching(parameters, everyEvent));
    }
    for (const auto& noEvent : {Value(Array{met, absent}), Value(Array{met, Value(1)}), Value(met), Value("eq"),
                                Value(1), Value(Array{Dictionary{{"key", 1}, {"op", "eq"}, {"value", 10}}})}) {
        EXPECT_FALSE(checkIfParamsAreMatching(parameters, noEvent));
    }
}

TEST(LowerCase, KnowsLettersOfManyScriptsAndLeavesAllElse) {
    EXPECT_EQ(lowerCased("AZ@[ ÀÞ×ß ĀŽŸ İı ŁŃ ΆΉΌΏΑΡΩΫ ЀЏАЯ Ҋԯ"),
              "az@[ àþ×ß āžÿ i\u0307ı łń άήόώαρωϋ ѐџая ҋԯ");
    EXPECT_EQ(lowerCased("ẤỸḀẔẞẖẟ ƠƯ ȘȚ ԱՖ"), "ấỹḁẕßẖẟ ơư șț աֆ");
    EXPECT_EQ(lowerCased("Ա\xE1\xBA \xE1"), "ա\xE1\xBA \xE1");
    EXPECT_EQ(lowerCased("Ａ日\xC3 \xFF\xC0\xAF\xC3"), "Ａ日\xC3 \xFF\xC0\xAF\xC3");
}

}  // namespace
}  // namespace orbinel::testing
