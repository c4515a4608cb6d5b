#include "base/number_reading.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "base/value_text.hpp"

namespace orbinel::testing {
namespace {

template <typename Result>
using Readings = std::vector<std::pair<std::optional<Result>, Array>>;

TEST(NumberReading, TakesTheNumberThatAValueBeginsWith) {
    constexpr auto highest = std::numeric_limits<std::int32_t>::max();
    constexpr auto lowest = std::numeric_limits<std::int32_t>::min();
    const Readings<std::int32_t> integers{{42, {"42"}},
                                          {-7, {" \n\v\f-7 apples"}},
                                          {8, {"+8"}},
                                          {12, {"12.9"}},
                                          {-3, {-3.9}},
                                          {1, {"1e3", true}},
                                          {0, {"+-8", "", "apples", std::nan("")}},
                                          {highest, {"99999999999999999999", 1e300, std::int64_t{1} << 40}},
                                          {lowest, {"-99999999999", -1e300}},
                                          {std::nullopt, {Null{}, Array{}, Dictionary{}, Date{1}, Value()}}};
    for (const auto& [expected, values] : integers) {
        for (const auto& value : values) EXPECT_EQ(intValue(value), expected) << textOf(value);
    }
    const Readings<double> doubles{{9.5, {"9.5", "\v+9.5 EUR", 9.5}},
                                   {-1000, {"-1e3", -1000}},
                                   {0, {"inf", "nan", "+-1", "", "EUR 3", false}},
                                   {std::nullopt, {Null{}, Array{}, Value()}}};
    for (const auto& [expected, values] : doubles) {
        for (const auto& value : values) EXPECT_EQ(doubleValue(value), expected) << textOf(value);
    }
}

TEST(NumberReading, TellsYesFromNo) {
    for (const Value& yes : Array{"yes", "True", " 001", "-9", "+y", "01", 0.1}) {
        EXPECT_EQ(boolValue(yes), true) << textOf(yes);
    }
    for (const Value& no : Array{"0.5", "no", "", "+", 0, std::nan(""), false}) {
        EXPECT_EQ(boolValue(no), false) << textOf(no);
    }
    EXPECT_EQ(boolValue(Dictionary{}), std::nullopt);
}

}  // namespace
}  // namespace orbinel::testing
