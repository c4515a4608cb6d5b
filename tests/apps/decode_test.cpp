#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/apps/tool_process.hpp"

namespace {

using orbinel::test::scrambled;
using orbinel::test::ToolProcess;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

struct Run {
    int status;
    std::string out;
    std::string err;
};

Run run(const std::vector<std::string>& arguments, const std::string& input = {}) {
    ToolProcess tool(arguments, input);
    const int status = tool.wait();
    return {status, tool.out(), tool.err()};
}

// The vectors come from a separate computation with these two multipliers.
TEST(Decode, AgreesWithFixedVectors) {
    if (ORBINEL_KEY_MULTIPLIER_1 != 7919 || ORBINEL_KEY_MULTIPLIER_2 != 104729) GTEST_SKIP() << "other multipliers";
    const std::string text = "{\"n\":1,\"t\":\"ž\"}";
    const std::vector<std::pair<std::string, std::string>> vectors = {
        {"1767225690", "Uk1yR35aWEx0cX0Afl5XW09SA11eYwoN"},
        {"", "VUl6RXlaX0h8c3oAeVpfWUhSBFlWYQ0N"},
        {"12a4", "V09zR3BYWUF+engGcFhWW05bBlBUZwQP"},
    };
    for (const auto& [timestamp, expected] : vectors) {
        EXPECT_EQ(scrambled(text, timestamp), expected) << timestamp;
        EXPECT_EQ(run({"decode", "--encode", "--ts", timestamp}, text).out, "{\"payload\":\"" + expected + "\"}\n");
        EXPECT_EQ(run({"decode", "--ts", timestamp}, expected).out, "{\n  \"n\": 1,\n  \"t\": \"ž\"\n}\n");
    }
}

// A long time stamp shifts bits out at the top; numbers must come through with the digits that were sent.
TEST(Decode, TakesWhatClientsSend) {
    const std::string timestamp(60, '1');
    const std::string text = R"({"big":18446744073709551616,"small":0.10,"list":[1.0,-0]})";
    const auto decoded = run({"decode", "--ts", timestamp, "-"},
                             "\n {\"payload\": \"" + scrambled(text, timestamp) + "\", \"more\": 1} \n");
    EXPECT_EQ(decoded.status, 0) << decoded.err;
    EXPECT_THAT(decoded.out,
                AllOf(HasSubstr("18446744073709551616"), HasSubstr("0.10"), HasSubstr("1.0"), HasSubstr("-0")));

    const auto id = run({"decode", "--text", "--ts", "17"}, scrambled("anna-1", "17"));
    EXPECT_EQ(id.out, "anna-1\n");
}

TEST(Decode, SaysInOneSentenceWhatIsWrong) {
    const auto envelope = "{\"payload\":\"" + scrambled("{}", "1767225690") + "\"}";
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
        {{"decode", "--ts", "17"}, scrambled("anna-1", "17"), 1, "is not JSON"},
        {{"decode", "--ts", "17"}, scrambled("\"\xff\"", "17"), 1, "is not JSON"},
        {{"decode", "--ts", "17"}, scrambled(std::string(2000, '['), "17"), 1, "deeper"},
        {{"decode", "--ts", "17"}, scrambled(std::string("{}\0{}", 5), "17"), 1, "NUL"},
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
        const auto result = run(arguments, input);
        EXPECT_EQ(result.status, status) << sentence;
        EXPECT_EQ(result.out, "") << sentence;
        EXPECT_THAT(result.err, AllOf(StartsWith("orbinel"), HasSubstr(sentence)));
    }
}

TEST(Help, IsAnsweredOnStdout) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--help"}, {"decode", "--help"}, {"backend", "--help"}}) {
        const auto help = run(arguments);
        EXPECT_EQ(help.status, 0);
        EXPECT_THAT(help.out, HasSubstr("Usage"));
        EXPECT_EQ(help.err, "");
    }
}

}  // namespace
