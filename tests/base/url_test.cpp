#include "base/url.hpp"

#include <gtest/gtest.h>

namespace orbinel::testing {
namespace {

TEST(Urls, OfTheWebAreToldFromOtherTexts) {
    for (const auto* url : {"http://r", "HTTPS://r:8080/a?b=[c]&d=%20#e", "http://[::1]/x", "http://u:p@r/"}) {
        EXPECT_TRUE(isLegalWebUrl(url)) << url;
        EXPECT_TRUE(isWebUrl(url)) << url;
    }
    for (const auto* text : {"", "r/x", "ftp://r/", "http://", "http:///x", "http://?x", "http://:80/", "http://u@/x",
                             "xhttp://r/", "http:r"}) {
        EXPECT_FALSE(isLegalWebUrl(text)) << text;
        EXPECT_FALSE(isWebUrl(text)) << text;
    }
    for (const auto* text : {"http://r/a b", "http://r/%2", "http://r/%zz", "http://r/\xC3\xA9", "http://r/{x}"}) {
        EXPECT_FALSE(isLegalWebUrl(text)) << text;
        EXPECT_TRUE(isWebUrl(text)) << text;  // as an engine tells it
        EXPECT_EQ(isLegalWebUrl(percentEscaped(text)), std::string_view(text).find('%') == std::string_view::npos);
    }
}

TEST(Urls, AreComparedByTheirLowerCaseBeginnings) {
    EXPECT_EQ(schemeOf("MailTo:a@b"), "mailto");
    EXPECT_EQ(schemeOf("a+b-c.1://x"), "a+b-c.1");
    for (const auto* text : {"", "noscheme", ":x", "1a:x", "a b:c", "/path:x"}) EXPECT_EQ(schemeOf(text), "") << text;
    EXPECT_EQ(originOf("HTTPS://Host:1/Path"), "https://host:1");
    EXPECT_EQ(originOf("https://host?q#f"), "https://host");
    EXPECT_EQ(originOf("about:blank"), "");
}

}  // namespace
}  // namespace orbinel::testing
