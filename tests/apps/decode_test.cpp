#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "apps/orbinel/decode/scrambling.hpp"
#include "tests/apps/tool_process.hpp"

namespace {

using orbinel::test::ToolProcess;
using orbinel::tool::scramble;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

// The vectors come from a separate computation with these two multipliers.
TEST(Decode, AgreesWithFixedVectors) {
    if (ORBINEL_KEY_MULTIPLIER_1 != 7919 || ORBINEL_KEY_MULTIPLIER_2 != 104729) GTEST_SKIP() << "other multipliers";
    const std::string text = "{\"n\":1,\"t\":\"ž\"}";
    const std::vector<std::pair<std::string, std::string>> vectors = {
        {"1767225690", "Uk1yR35aWEx0cX0Afl5XW09SA11eYwoN"},
        {"", "VUl6RXlaX0h8c3oAeVpfWUhSBFlWYQ0N"},
        {std::string(60, '1'), "U0h9QnFcXk97e3wBfl1XX0lVA1FQYAoK"},  // shifts bits out at the top
        {"12a4", "V09zR3BYWUF+engGcFhWW05bBlBUZwQP"},
    };
    for (const auto& [timestamp, expected] : vectors) {
        EXPECT_EQ(ToolProcess({"decode", "--encode", "--ts", timestamp}, text).out(),
                  "{\"payload\":\"" + expected + "\"}\n");
        EXPECT_EQ(ToolProcess({"decode", "--ts", timestamp}, expected).out(), "{\n  \"n\": 1,\n  \"t\": \"ž\"\n}\n");
    }
}

// Numbers must come through with the digits that were sent.
TEST(Decode, TakesWhatClientsSend) {
    const std::string timestamp = "1767225690";
    const std::string text = R"({"big":18446744073709551616,"small":0.10,"list":[1.0,-0]})";
    ToolProcess decoded({"decode", "--ts", timestamp, "-"},
                        "\n {\"payload\": \"" + scramble(text, timestamp) + "\", \"more\": 1} \n");
    EXPECT_EQ(decoded.wait(), 0) << decoded.err();
    EXPECT_THAT(decoded.out(),
                AllOf(HasSubstr("18446744073709551616"), HasSubstr("0.10"), HasSubstr("1.0"), HasSubstr("-0")));

    EXPECT_EQ(ToolProcess({"decode", "--text", "--ts", "17"}, scramble("anna-1", "17")).out(), "anna-1\n");
}

TEST(Decode, SaysInOneSentenceWhatIsWrong) {
    const auto envelope = "{\"payload\":\"" + scramble("{}", "1767225690") + "\"}";
    struct Case {
        std::vector<std::string> arguments;
        std::string input;
        int status;
        std::string sentence;
    };
    const std::vector<Case> cases = {
        {{"decode", "--ts", "1"}, "", 1, "the input is empty"},
        {{"decode", "--ts", "1"}, "no*base64", 1, "is not base64"},
        {{"decode", "--ts", "1"}, "YQ=", 1, "is not base64"},
        {{"decode", "--ts", "1"}, "gICA", 1, "scrambling cannot give"},
        {{"decode", "--ts", "1"}, "{\"payload\":1}", 1, "is not a text"},
        {{"decode", "--ts", "1"}, "{\"load\":\"\"}", 1, "has no \"payload\""},
        {{"decode", "--ts", "1"}, "{\"payload\":\"YQ==\"", 1, "line 1, offset 17"},
        {{"decode", "--ts", "999"}, envelope, 1, "999"},
        {{"decode", "--ts", "17"}, scramble("anna-1", "17"), 1, "is not JSON"},
        {{"decode", "--ts", "17"}, scramble("\"\xff\"", "17"), 1, "is not JSON"},
        {{"decode", "--ts", "17"}, scramble(std::string(2000, '['), "17"), 1, "deeper"},
        {{"decode", "--ts", "17"}, scramble(std::string("{}\0{}", 5), "17"), 1, "NUL"},
        {{"decode", "--encode", "--ts", "1"}, "{", 1, "is not JSON"},
        {{"decode", "--ts", "1", "/nowhere/x"}, "", 1, "/nowhere/x: No such file"},
        {{"decode", "--ts", "1", "/tmp"}, "", 1, "cannot read /tmp"},
        {{"decode"}, "", 2, "--ts is missing"},
        {{"decode", "--ts"}, "", 2, "--ts"},
        {{"decode", "--ts", "1", "a", "b"}, "", 2, "one file"},
        {{"decode", "--nonsense"}, "", 2, "--nonsense"},
        {{"backend", "--port", "99999"}, "", 2, "\"99999\" is not a port"},
        {{"backend", "--port", "8o"}, "", 2, "\"8o\" is not a port"},
        {{"backend", "--answers", "/nowhere"}, "", 2, "/nowhere is not a directory"},
        {{"backend", "more"}, "", 2, "\"more\""},
        {{"dekode"}, "", 2, "there is no subcommand \"dekode\""},
        {{}, "", 2, "a subcommand is missing"},
    };
    for (const auto& [arguments, input, status, sentence] : cases) {
        ToolProcess tool(arguments, input);
        EXPECT_EQ(tool.wait(), status) << sentence;
        EXPECT_EQ(tool.out(), "") << sentence;
        EXPECT_THAT(tool.err(), AllOf(StartsWith("orbinel"), HasSubstr(sentence)));
    }
}

TEST(Help, IsAnsweredOnStdout) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--help"}, {"decode", "--help"}, {"backend", "--help"}}) {
        ToolProcess help(arguments);
        EXPECT_EQ(help.wait(), 0);
        EXPECT_THAT(help.out(), HasSubstr("Usage"));
        EXPECT_EQ(help.err(), "");
    }
}

}  // namespace
