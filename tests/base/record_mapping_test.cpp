#include "base/record_mapping.hpp"

#include <gtest/gtest.h>

namespace orbinel {

struct Inner {
    std::string name;
    bool operator==(const Inner&) const = default;
};
template <>
struct RecordFields<Inner> {
    static constexpr auto fields = std::tuple{recordField("name", &Inner::name)};
};

/// Travels as its negation.
struct NegatedTransformer {
    static Value toValue(bool content) { return !content; }
    template <typename Content>
    static std::optional<bool> fromValue(const Value& value) {
        return value.ifBoolean() != nullptr ? std::optional(!*value.ifBoolean()) : std::nullopt;
    }
};

struct Outer {
    std::int32_t count = 5;
    std::optional<std::string> note;
    bool shown = true;
    std::vector<Inner> inners;
    Value anything;
    bool operator==(const Outer&) const = default;
};
template <>
struct RecordFields<Outer> {
    static constexpr auto fields =
        std::tuple{recordField("count", &Outer::count), recordField("note", &Outer::note),
                   recordField<NegatedTransformer>("hidden", &Outer::shown), recordField("inners", &Outer::inners),
                   recordField("anything", &Outer::anything)};
};

namespace testing {
namespace {

TEST(RecordMapping, WritesFieldsInOrderAndReadsThemBack) {
    const Outer outer{7, std::nullopt, false, {{"a"}, {"b"}}, {}};
    const auto dictionary = toDictionary(outer);
    EXPECT_EQ(dictionary, (Dictionary{{"count", 7},
                                      {"hidden", true},
                                      {"inners", Array{Dictionary{{"name", "a"}}, Dictionary{{"name", "b"}}}}}));
    EXPECT_EQ(dictionary.begin()->first, "count");
    EXPECT_EQ(fromDictionary<Outer>(dictionary), outer);
}

TEST(RecordMapping, KeepsInitialValuesWhereAKeyIsMissingOrOfAnotherKind) {
    EXPECT_EQ(fromDictionary<Outer>({}), Outer());
    const auto read =
        fromDictionary<Outer>({{"count", 1e10}, {"note", 7}, {"hidden", "yes"}, {"inners", Array{1, Dictionary{}}}});
    EXPECT_EQ(read.count, 5);
    EXPECT_EQ(read.note, std::nullopt);
    EXPECT_TRUE(read.shown);
    EXPECT_EQ(read.inners, std::vector<Inner>{Inner{}});
}

TEST(RecordMapping, RenamesKeysByAMapper) {
    const auto prefixed = [](std::string_view key) { return "x_" + std::string(key); };
    const auto dictionary = toDictionary(Inner{"a"}, prefixed);
    EXPECT_EQ(dictionary, (Dictionary{{"x_name", "a"}}));
    EXPECT_EQ(fromDictionary<Inner>(dictionary, prefixed), Inner{"a"});
}

}  // namespace
}  // namespace testing
}  // namespace orbinel
