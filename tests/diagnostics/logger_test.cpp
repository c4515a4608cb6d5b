#include "diagnostics/logger.hpp"

#include <limits>
#include <set>
#include <thread>

#include "base/json_rules.hpp"
#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

/// The logger of a running world, as the taker of its records.
struct LoggerTest : LibraryTest {
    LoggerTest() {
        initialise();
        reportTo(logger, sinks);
    }

    void applySwitches(bool enabled, double interval) {
        logger.setLogFlushTimeInterval(interval);
        logger.setSessionId("s-1");
        logger.setIsLoggingEnabled(enabled);
        logger.startSendingLogsIfAppropriate();
    }
    static void report(std::string_view message) { world().reports.log(LogType::common, LogLevel::info, message); }
    static void report(std::string_view message, Dictionary attributes) {
        world().reports.log(LogType::reinit, LogLevel::error, message, [&] { return attributes; });
    }
    std::vector<Received> batches() const { return backend.received("/api//logging/sdk/v2"); }
    std::vector<Dictionary> sent() const {
        std::vector<Dictionary> records;
        for (const auto& batch : batches()) {
            for (const auto& record : *batch.payload["logs"].ifArray()) records.push_back(*record.ifDictionary());
        }
        return records;
    }
    std::vector<std::string> messagesSent() const {
        std::vector<std::string> messages;
        for (const auto& record : sent()) messages.push_back(record["message"].stringOrEmpty());
        return messages;
    }

    TestDevices& testDevices = world().testDevices;
    OrbinelLogger& logger = world().logger;
};

TEST_F(LoggerTest, SendsABatchAtEachTickThatFindsRecords) {
    host.device->change([](platform::DeviceFacts& facts) { facts.vendorIdentifier.reset(); });
    applySwitches(true, 10);
    report("one", {{"k", "v"}});
    report("two");
    host.advance(30);

    ASSERT_THAT(batches(), SizeIs(1));
    const auto batch = batches().front();
    EXPECT_THAT(batch.headerOrder, ElementsAre("Content-Type", "Content-Length", "ts", "X-Requested-With"));
    EXPECT_EQ(batch.headers.at("ts"), "1767225610");
    EXPECT_EQ(batch.headers.at("X-Requested-With"), "acme");
    EXPECT_EQ(batch.headers.at("Content-Length"), std::to_string(batch.body.size()));
    EXPECT_EQ(batch.payload["partner_name"], "acme");
    const auto udid = *world().helper.getUdid();
    EXPECT_EQ(sent().at(0), (Dictionary{{"log_type", ""},
                                        {"message", "one"},
                                        {"custom_attributes", Dictionary{{"k", "v"}}},
                                        {"log_level", "error"},
                                        {"session_id", "s-1"},
                                        {"platform", "iOS"},
                                        {"sdk_version", world().deviceAttributes.getSDKVersion()},
                                        {"orbinel_id", udid},
                                        {"udid", udid},
                                        {"fresh_udid", ""},
                                        {"app_version", "1.0.0"},
                                        {"os_version", *world().deviceAttributes.getOsVersion()},
                                        {"partner_name", "acme"},
                                        {"timestamp", 1'767'225'600}}));
    EXPECT_EQ(sent().at(1)["log_type"], "common");
    EXPECT_EQ(sent().at(1)["custom_attributes"], "");
}

TEST_F(LoggerTest, DropsRecordsWhileNobodyAsksForThem) {
    report("before the first answer");
    for (const double never : {0.0, -1.0, nan}) {
        applySwitches(true, never);
        report("without an interval");
    }
    applySwitches(false, 10);
    report("switched off");
    host.advance(100);
    EXPECT_THAT(logger.getLogs(), IsEmpty());
    EXPECT_THAT(backend.paths(), IsEmpty());
}

TEST_F(LoggerTest, KeepsItsFirstTimer) {
    applySwitches(true, 10);
    applySwitches(true, 1'000);
    backend.answerOnce("/logging/sdk/v2", {.status = std::nullopt});
    report("one");
    host.advance(10);
    report("two");
    applySwitches(false, 1'000);
    host.advance(10);
    applySwitches(true, 1'000);
    world().helper.setSdkDisabled(true);
    host.advance(10);
    EXPECT_THAT(messagesSent(), ElementsAre("one"));
    world().helper.setSdkDisabled(false);
    host.advance(10);
    EXPECT_THAT(messagesSent(), ElementsAre("one", "two"));
}

// One bad value costs itself, never the batch.
TEST_F(LoggerTest, CleansEachRecord) {
    Value deepest = Dictionary();  // the most that fits into a batch: payload, list, record, attributes, these
    for (int level = 1; level < maximumValueDepth - 4; ++level) deepest = Array{std::move(deepest)};
    applySwitches(true, std::numeric_limits<double>::infinity());
    report("bad", {{"nan", nan}, {"deep", Array{deepest}}, {"deepest", deepest}, {"kept", Array{Date{1}, 1}}});
    host.advance(1e6);
    EXPECT_THAT(batches(), IsEmpty());
    const auto records = logger.getLogs();
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_TRUE(isValidJsonDeeply(Dictionary{{"logs", Array{toDictionary(records[0])}}}));
    const auto& attributes = *records[0].customAttributes;
    EXPECT_FALSE(attributes.contains("nan"));
    EXPECT_NE(attributes["deep"], Array{deepest});
    EXPECT_EQ(attributes["deepest"], deepest);
    EXPECT_EQ(attributes["kept"], Array{1});
}

// A page of a message can repeat itself for ever, and the device must not pay for it.
TEST_F(LoggerTest, HoldsNoMoreThanItsBounds) {
    applySwitches(true, 10);
    for (int i = 0; i < 10; ++i) report("large", {{"data", std::string(1'000'000, 'x')}});
    report("after it");
    EXPECT_THAT(logger.getLogs(), SizeIs(9));
    EXPECT_EQ(logger.flushLogs().back().message, "after it") << "a small one still fits";
    report("next");
    EXPECT_THAT(logger.getLogs(), SizeIs(1));
}

TEST_F(LoggerTest, PrintsAndKeepsRecordsOnATestDevice) {
    testDevices.markDeviceAsDebug();
    report("line\nbreak", {{"k", "v"}});
    report("plain");
    EXPECT_THAT(host.console->lines(),
                ElementsAre(R"([ORBINEL][V2LOGS][] line\nbreak {"k":"v"})", "[ORBINEL][V2LOGS][common] plain"));
    host.advance(100);
    EXPECT_THAT(backend.paths(), IsEmpty());

    applySwitches(true, 10);
    host.advance(10);
    EXPECT_THAT(messagesSent(), ElementsAre("line\nbreak", "plain"));
    EXPECT_THAT(host.console->lines().back(),
                StartsWith(R"([ORBINEL][V2LOGS][sentLogs]: { "partner_name": "acme", "logs": [ { "log_type")"));
    logger.sendLogPayloadData("\xFF");
    EXPECT_EQ(host.console->lines().back(), "[ORBINEL][V2LOGS][sentLogs]: Failed to convert NSData to NSString");
}

TEST_F(LoggerTest, LosesNoRecordOfAnyThread) {
    constexpr int threads = 4;
    constexpr int each = 300;
    applySwitches(true, 10);
    std::vector<std::thread> reporters;
    std::atomic<int> finished{0};
    for (int thread = 0; thread < threads; ++thread) {
        reporters.emplace_back([&, thread] {
            for (int i = 0; i < each; ++i) report(std::to_string(thread * each + i));
            ++finished;
        });
    }
    while (finished < threads) {
        logger.prepareAndSendLogs();
        host.settle();
    }
    for (auto& reporter : reporters) reporter.join();
    host.advance(10);
    const auto messages = messagesSent();
    EXPECT_THAT(messages, SizeIs(threads * each));
    EXPECT_THAT(std::set<std::string>(messages.begin(), messages.end()), SizeIs(threads * each));
}

}  // namespace
}  // namespace orbinel::testing
