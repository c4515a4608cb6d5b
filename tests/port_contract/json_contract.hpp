#pragma once

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "orbinel/platform/json.hpp"
#include "tests/port_contract/contract_support.hpp"

namespace orbinel::contract {

struct JsonContract : Contract<std::shared_ptr<platform::Json>> {
    [[nodiscard]] Value parsed(std::string_view text) const {
        auto outcome = json->parse(text);
        if (const auto* failure = std::get_if<platform::JsonFailure>(&outcome)) {
            ADD_FAILURE() << text << ": " << failure->reason;
            return {};
        }
        return std::get<Value>(std::move(outcome));
    }

    [[nodiscard]] std::optional<std::string> compact(const Value& value) const {
        return json->serialise(value, platform::JsonStyle::compact);
    }

    [[nodiscard]] static Value nested(int depth) {
        Value value = Array{};
        for (int i = 1; i < depth; ++i) {
            value = i % 2 == 0 ? Value(Array{std::move(value)}) : Value(Dictionary{{"d", std::move(value)}});
        }
        return value;
    }

    std::shared_ptr<platform::Json>& json = made;
};

TEST_P(JsonContract, ReadsEveryKindAndKeepsTheOrderOfKeys) {
    const auto value =
        parsed(R"( {"z":null,"a":[true,false,{}],"text":"\u0000\ud83d\ude00\/ş","z2":-12,"":1.5,"a":"last"} )");
    const auto* dictionary = value.ifDictionary();
    ASSERT_NE(dictionary, nullptr);
    std::vector<std::string> keys;
    for (const auto& [key, inner] : *dictionary) keys.push_back(key);
    EXPECT_THAT(keys, testing::ElementsAre("z", "a", "text", "z2", ""));
    EXPECT_TRUE((*dictionary)["z"].isNull());
    EXPECT_EQ((*dictionary)["a"], Value("last"));
    EXPECT_EQ((*dictionary)["text"], Value(std::string("\0😀/ş", 8)));
    EXPECT_EQ((*dictionary)["z2"].kind(), Value::Kind::int64);
    EXPECT_EQ((*dictionary)[""].kind(), Value::Kind::real);
    EXPECT_EQ(parsed("\"alone\""), Value("alone"));
}

TEST_P(JsonContract, WholeNumbersThatFitAreIntegersAndAllOthersDoubles) {
    const std::vector<std::pair<const char*, Value>> cases{
        {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
        {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
        {"4294967296", std::int64_t{4294967296}},
        {"9223372036854775808", 9223372036854775808.0},
        {"-9223372036854775809", -9223372036854775808.0},
        {"1e2", 100.0},
        {"0.1", 0.1},
        {"2.2250738585072011e-308", 2.2250738585072011e-308},
        {"5e-324", 5e-324},
        {"1e-400", 0.0},
        {"-0.0", 0.0},
        {"-12.5E+1", -125.0},
        {"9007199254740993.0", 9007199254740992.0},
        {"1.7976931348623157e308", std::numeric_limits<double>::max()},
    };
    for (const auto& [text, expected] : cases) {
        const auto value = parsed(text);
        EXPECT_EQ(value.kind(), expected.kind()) << text;
        EXPECT_EQ(value, expected) << text;
    }
}

TEST_P(JsonContract, RefusesWhatIsNotJson) {
    const std::vector<std::string> structures{"",        " ",  "{", "{\"a\"}", "{a:1}", "nul", "{}x", "{\"\xc3\":1}",
                                              "// c\n1", "'a'"};
    const std::vector<std::string> numbers{
        "[1,]", "01", "+1", ".5", "1.", "NaN", "-Infinity", "1 2", "1e400", "-1e400", "[223527e308, 1", "-223527e308"};
    const std::vector<std::string> texts{"\"a\nb\"", "\"\\x\"",      "\"\\ud800\"",      "\"\\udc00\"",
                                         "\"\xff\"", "\"\xc0\xaf\"", "\"\xed\xa0\x80\"", "\"\xf4\x90\x80\x80\"",
                                         "\"open"};
    const std::string nul("1\0", 2);
    for (const auto& all :
         {structures, numbers, texts, {nul, nul + "garbage", "1844674407370955176931348623157e308"}}) {
        for (const auto& text : all) {
            const auto outcome = json->parse(text);
            const auto* failure = std::get_if<platform::JsonFailure>(&outcome);
            ASSERT_NE(failure, nullptr) << testing::PrintToString(text);
            EXPECT_FALSE(failure->reason.empty());
            EXPECT_LE(failure->offset, text.size());
        }
    }
}

TEST_P(JsonContract, NestsAsDeepAsTheBoundAndNoDeeper) {
    const auto text = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    EXPECT_TRUE(isWithinDepth(parsed(text(maximumValueDepth))));
    EXPECT_TRUE(std::holds_alternative<platform::JsonFailure>(json->parse(text(maximumValueDepth + 1))));
    EXPECT_TRUE(std::holds_alternative<platform::JsonFailure>(json->parse(std::string(1'000'000, '['))));
    EXPECT_TRUE(compact(nested(maximumValueDepth)));
    EXPECT_FALSE(compact(nested(maximumValueDepth + 1)));
}

TEST_P(JsonContract, WritesNumbersWithTheFewestDigitsThatReadBackTheSame) {
    const std::vector<std::pair<Value, const char*>> exact{
        {0.0, "0"},       {-0.0, "0"},
        {90.0, "90"},     {9007199254740992.0, "9007199254740992"},
        {0.1, "0.1"},     {-9007199254740992.0, "-9007199254740992"},
        {9.5, "9.5"},     {std::numeric_limits<std::int64_t>::min(), "-9223372036854775808"},
        {-0.05, "-0.05"}, {0.1 + 0.2, "0.30000000000000004"},
        {1.005, "1.005"}, {-99999999999.999, "-99999999999.999"},
        {true, "true"},   {7, "7"},
    };
    for (const auto& [value, text] : exact) EXPECT_EQ(compact(value), text);
    // The last two are among those where a fast algorithm gives a digit too many.
    for (const double real : {1e300, 1e-7, 5e-324, 1.0 / 3, 9007199254740994.0, 1e23, 5.0e-324, 9.5367431640625e-7,
                              4.1358803493276567e-16, 2.2250738585072014e-308}) {
        const auto text = compact(real);
        ASSERT_TRUE(text);
        EXPECT_EQ(parsed(*text).number(), real) << *text;
    }
    EXPECT_LE(compact(1e23)->size(), 5u);
    for (const double real : {std::nan(""), HUGE_VAL, -HUGE_VAL}) EXPECT_EQ(compact(Array{real}), std::nullopt);
}

TEST_P(JsonContract, WritesTextsSafelyWhateverTheirBytes) {
    EXPECT_EQ(compact("plain \"quoted\" \\ \n\x01"), R"("plain \"quoted\" \\ \n\u0001")");
    EXPECT_EQ(compact("ş😀"), "\"ş😀\"");
    EXPECT_EQ(compact(std::string("a\0b", 3)), R"("a\u0000b")");
    EXPECT_EQ(compact(std::string("ş\0\xff", 4)), "\"ş\\u0000\uFFFD\"");
    EXPECT_EQ(compact(Dictionary{{"long enough for words \xc3", "cut \xe2\x82"}}),
              "{\"long enough for words \uFFFD\":\"cut \uFFFD\uFFFD\"}");
}

TEST_P(JsonContract, WritesInEachStyle) {
    const Dictionary dictionary{
        {"b", Array{1, Null{}, Array{}}}, {"a", Dictionary{{"d", 1}, {"c", 2}}}, {"Z", Dictionary{}}};
    EXPECT_EQ(json->serialise(dictionary, platform::JsonStyle::compact),
              R"({"b":[1,null,[]],"a":{"d":1,"c":2},"Z":{}})");
    EXPECT_EQ(json->serialise(Value(dictionary), platform::JsonStyle::compactSorted),
              R"({"Z":{},"a":{"c":2,"d":1},"b":[1,null,[]]})");
    EXPECT_EQ(json->serialise(Dictionary{{"b", Array{1}}, {"a", true}}, platform::JsonStyle::pretty),
              "{\n  \"b\": [\n    1\n  ],\n  \"a\": true\n}");
}

TEST_P(JsonContract, WritesNothingWhereAValueHoldsWhatJsonCannot) {
    EXPECT_EQ(compact(Value{}), std::nullopt);
    EXPECT_EQ(compact(Date{1}), std::nullopt);
    EXPECT_EQ(compact(Dictionary{{"first", 1}, {"date", Date{1}}}), std::nullopt);
    EXPECT_EQ(compact(Array{1, Value{}}), std::nullopt);
}

}  // namespace orbinel::contract
