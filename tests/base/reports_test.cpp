#include "base/reports.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "base/guard.hpp"
#include "orbinel/headless/headless_console.hpp"
#include "support/recording_sinks.hpp"

namespace orbinel::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
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

class ReportsTest : public ::testing::Test {
protected:
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
