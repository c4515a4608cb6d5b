#include "events/validation.hpp"

#include "base/json_rules.hpp"
#include "events/data_types.hpp"
#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

using ValidationTest = LibraryTest;

TEST_F(ValidationTest, AcceptsNamesByTheirWholeText) {
    const auto& validation = world().validation;
    for (const char* name : {"purchase", "a1_b", "a", "a_"})
        EXPECT_TRUE(validation.isNameValid(std::string_view(name)));
    const std::string embedded("a\0b", 3);
    for (const std::string& name : {std::string("Purchase"), std::string("1abc"), std::string("_x"), std::string("a-b"),
                                    std::string("\xC3\xA4"), std::string("a\n"), std::string("\na"), embedded}) {
        sinks.clear();
        EXPECT_FALSE(validation.isNameValid(std::string_view(name)));
        const auto fed = sinks.feeds("isNameValid");
        ASSERT_THAT(fed, SizeIs(1));
        EXPECT_EQ(fed[0].data,
                  (Dictionary{{"value", name}, {"warning", "This is not a valid name for an Event or an Attribute"}}));
    }
    sinks.clear();
    for (const Value& none : {Value(""), Value(7), Value()}) EXPECT_FALSE(validation.isNameValid(none));
    for (const auto& feed : sinks.feeds("isNameValid")) {
        EXPECT_EQ(feed.data, (Dictionary{{"warning", "Event or Attribute name cannot be empty."}}));
    }
    EXPECT_TRUE(validation.isNameValid(std::string_view(std::string(1'000'000, 'a'))));
}

TEST_F(ValidationTest, TellsTypesApart) {
    const std::vector<std::pair<Value, std::string_view>> cases{
        {true, "boolean"},         {"x", "string"},          {std::int32_t{7}, "int"}, {std::int64_t{7}, "double"},
        {7.5, "double"},           {std::int16_t{7}, "int"}, {Date{1}, "date"},        {Array{}, "array"},
        {Dictionary{}, "unknown"}, {Null{}, "unknown"},      {Value(), "unknown"}};
    for (const auto& [value, type] : cases) EXPECT_EQ(getDataTypeOfObject(value), type);
    EXPECT_EQ(makeArrayValid({"a", 1, "b", Null{}, Array{"c"}}), (Array{"a", "b"}));
    EXPECT_EQ(removeCustomPrefix("c_level"), "level");
    EXPECT_EQ(removeCustomPrefix("level"), "level");
}

TEST_F(ValidationTest, ChecksParametersByTheirOutside) {
    const auto& validation = world().validation;
    EXPECT_TRUE(validation.isParametersValid(Dictionary{}));
    EXPECT_TRUE(
        validation.isParametersValid(Dictionary{{"n", Dictionary{{"x", Date{1}}}}, {"b", true}, {"a", Array{}}}));
    for (const Value& bad : {Value(Date{1}), Value(Null{}), Value()}) {
        EXPECT_FALSE(validation.isParametersValid(Dictionary{{"n", bad}}));
    }
    EXPECT_FALSE(validation.isParametersValid(Value("x")));
    EXPECT_EQ(sinks.count("Value of parameter is an unsupported type"), 3U);
    EXPECT_EQ(sinks.count("Invalid parameters structure."), 1U);
    EXPECT_TRUE(isValidJSONObject(Value(Array{Dictionary{{"d", Date{1}}}, Null{}})));
    EXPECT_FALSE(isValidJSONObject(Value(Array{Date{1}})));
    EXPECT_FALSE(isValidJSONObject(Value("text")));
}

}  // namespace
}  // namespace orbinel::testing
