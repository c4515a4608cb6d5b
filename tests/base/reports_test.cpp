#include "base/reports.hpp"

#include <gmock/gmock.h>

#include <stdexcept>

#include "base/guard.hpp"
#include "orbinel/headless/headless_console.hpp"
#include "support/recording_sinks.hpp"

namespace orbinel::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

/// A crash handler that fails while it reports, and makes its report as a feed.
class FailingCrashReports final : public CrashReports {
public:
    explicit FailingCrashReports(Reports& reports) : reports_(reports) {}
    void sendError(std::string_view error, std::string_view description) override {
        descriptions.emplace_back(description);
        reports_.feed(
            "sendError",
            [&] {
                guarded(reports_, "-[Identifier read]", [] { throw std::runtime_error("while reporting"); });
                return Dictionary{{"error", error}};
            },
            true, true);
    }
    std::vector<std::string> descriptions;

private:
    Reports& reports_;
};

struct ReportsTest : ::testing::Test {
    headless::HeadlessConsole console;
    Reports reports{console};
    RecordingSinks sinks;
};

TEST_F(ReportsTest, BuildsNothingThatNobodyTakes) {
    int built = 0;
    const auto build = [&] {
        ++built;
        return Dictionary();
    };
    reports.log(LogType::common, LogLevel::info, "m", build);
    reports.feed("f", build);
    EXPECT_EQ(built, 0);
    reports.setDevelopmentLog(true);
    reports.log(LogType::common, LogLevel::error, "m", build);
    reports.feed("f", build, true);
    EXPECT_EQ(built, 2);
    EXPECT_THAT(console.lines(),
                ElementsAre("[ORBINEL][DEVELOPMENT] common error: m {}", "[ORBINEL][DEVELOPMENT] feed f error: {}"));
    reports.feed("f", [&]() -> Dictionary { throw 1; });
    EXPECT_THAT(console.lines(), SizeIs(3));
}

TEST_F(ReportsTest, TheDevelopmentLogTellsNobodyWhoThePersonIs) {
    reports.setDevelopmentLog(true);
    const auto lineOf = [&](const std::string& topic, const Dictionary& data) {
        reports.feed(topic, [&] { return data; });
        return console.lines().back().substr(std::string("[ORBINEL][DEVELOPMENT] feed ").size());
    };
    EXPECT_EQ(lineOf("setUserAttribute", {{"name", "na"}, {"value", "Adelheid"}}),
              "setUserAttribute: {name: \"na\", value: \"Ad…(8)\"}");
    EXPECT_EQ(lineOf("setCustomAttribute", {{"name", "age"}, {"value", 34}}),
              "setCustomAttribute: {name: \"age\", value: \"…(2)\"}");
    EXPECT_EQ(lineOf("setUserIdentifier", {{"c_club", "member-7"}}), "setUserIdentifier: {c_club: \"me…(8)\"}");
    EXPECT_EQ(lineOf("saved", {{"orbinel_id", "person.of.test"}, {"identifiers", Dictionary{{"uuid", "number-42"}}}}),
              "saved: {orbinel_id: \"pe…(14)\", identifiers: {uuid: \"nu…(9)\"}}");
    EXPECT_EQ(lineOf("registerDeviceToken", {{"deviceToken", "00ff11ee22dd33cc"}}),
              "registerDeviceToken: {deviceToken: \"00…(16)\"}");
    EXPECT_EQ(lineOf("sessionStopRequest", {{"stop_request", "{\"na\": \"Ada\"}"}}),
              "sessionStopRequest: {stop_request: \"{\"…(13)\"}");
    // Wherever else they stand, also where the line is cut.
    EXPECT_EQ(lineOf("tagEvent", {{"event_name", "seen"}, {"note", "to ada@acme.com, +441632960001."}, {"price", 9.5}}),
              "tagEvent: {event_name: \"seen\", note: \"to ad…(12), +4…(13).\", price: 9.5}");
    const std::string udid = "166B1A6EF9524185BB60F7D6C86CD62C";
    const std::string filler(1980, 'x');
    EXPECT_THAT(lineOf("f", {{"a", filler + " " + udid}}), Not(HasSubstr(udid.substr(0, 5))));
    reports.note("The device 166b1a6e-f952-4185-bb60-f7d6c86cd62c asked at 1795391514.0123456789012345.");
    EXPECT_EQ(console.lines().back(),
              "[ORBINEL][DEVELOPMENT] The device 16…(36) asked at 1795391514.0123456789012345.");
}

TEST_F(ReportsTest, WhoTakesReportsGetsThemWhole) {
    reports.setDevelopmentLog(true);
    reports.wizardFeed.bind(sinks);
    const Dictionary data{{"name", "em"}, {"value", "ada@acme.com"}};
    reports.feed("setUserAttribute", [&] { return data; });
    EXPECT_EQ(sinks.feeds("setUserAttribute").at(0).data, data);
}

TEST_F(ReportsTest, CatchesEverythingAndDescribesIt) {
    FailingCrashReports crashes(reports);
    reports.crashReports.bind(crashes);
    EXPECT_EQ(guarded(reports, "+[A b]", 7, []() -> int { throw std::runtime_error("x"); }), 7);
    EXPECT_FALSE(guarded(reports, {"+[A b]", DescriptionForm::functionAndLine}, [] { throw 1; }));
    EXPECT_FALSE(guarded(reports, {"+[A b]", DescriptionForm::withReason}, [] { throw std::runtime_error("why"); }));
    EXPECT_FALSE(guarded(reports, {"Fixed - text", DescriptionForm::nameOnly}, [] { throw 1; }));
    ASSERT_THAT(crashes.descriptions, SizeIs(4));
    EXPECT_THAT(crashes.descriptions[0], StartsWith("+[A b]:"));
    EXPECT_THAT(crashes.descriptions[1], StartsWith("function : +[A b] line : "));
    EXPECT_THAT(crashes.descriptions[2], ::testing::MatchesRegex("\\+\\[A b\\]:[0-9]+ - why"));
    EXPECT_EQ(crashes.descriptions[3], "Fixed - text");
    reports.crashReports.unbind();
}

// A report that fails while it is made must not call itself.
TEST_F(ReportsTest, AReportNeverCallsItself) {
    FailingCrashReports crashes(reports);
    reports.crashReports.bind(crashes);
    reports.wizardFeed.bind(sinks);
    guarded(reports, "+[A b]", [] { throw std::runtime_error("first"); });
    EXPECT_THAT(crashes.descriptions, SizeIs(1));
    EXPECT_THAT(sinks.feeds("sendError"), SizeIs(1));

    /// A sink that logs and feeds while it takes a record.
    struct Chatty final : DiagnosticLog {
        explicit Chatty(Reports& all) : reports(all) {}
        bool takesRecords() const noexcept override { return true; }
        void log(DiagnosticRecord) override {
            ++taken;
            reports.log(LogType::common, LogLevel::info, "again");
            reports.sendError("again", "again");
        }
        Reports& reports;
        int taken = 0;
    } chatty(reports);
    reports.diagnosticLog.bind(chatty);
    reports.log(LogType::common, LogLevel::info, "once");
    EXPECT_EQ(chatty.taken, 1);
    EXPECT_THAT(crashes.descriptions, SizeIs(1));
    reports.diagnosticLog.unbind();
    reports.crashReports.unbind();
}

}  // namespace
}  // namespace orbinel::testing
