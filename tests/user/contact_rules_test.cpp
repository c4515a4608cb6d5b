#include "user/contact_rules.hpp"

#include <gtest/gtest.h>

#include <regex>
#include <string>

namespace orbinel {
namespace {

/// Calls with every text over the alphabet up to a length.
template <typename Visit>
void forEveryText(const std::string& alphabet, std::size_t longest, const std::string& begun, const Visit& visit) {
    visit(begun);
    if (begun.size() == longest) return;
    for (const char c : alphabet) forEveryText(alphabet, longest, begun + c, visit);
}

TEST(ContactRules, AgreeWithTheirExpressionsOnEveryShortText) {
    const std::regex email("[^\n]+@[^\n]+\\.[^\n]+");
    forEveryText("a@.\n", 7, "",
                 [&](const auto& text) { ASSERT_EQ(isEmailValid(text), std::regex_match(text, email)) << text; });
    const std::regex phoneNumber("\\+[1-9][0-9]{1,14}");
    forEveryText("+019 ", 5, "", [&](const auto& text) {
        ASSERT_EQ(isPhoneNumberValid(text), std::regex_match(text, phoneNumber)) << text;
    });
}

TEST(ContactRules, HoldTheirLimitsAndStayLinear) {
    EXPECT_TRUE(isPhoneNumberValid("+" + std::string(15, '1')));
    EXPECT_FALSE(isPhoneNumberValid("+" + std::string(16, '1')));
    EXPECT_FALSE(isPhoneNumberValid("+1\xD9\xA1"));
    EXPECT_TRUE(isEmailValid("\xC3\xA4@\xC3\xA4.\xC3\xA4"));
    for (const char* lineBreak : {"\r", "\v", "\f", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
        EXPECT_FALSE(isEmailValid(std::string("a@b.c") + lineBreak));
    }
    const std::string many(1 << 20, '@');
    EXPECT_FALSE(isEmailValid(many));
    EXPECT_TRUE(isEmailValid(many + ".c"));
    EXPECT_FALSE(isEmailValid("a" + std::string(1 << 20, '.') + "@"));
}

}  // namespace
}  // namespace orbinel
