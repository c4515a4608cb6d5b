#include <limits>

#include "support/failing_services.hpp"
#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

struct RequestSenderTest : LibraryTest {
    RequestSenderTest() { initialise(); }

    /// Sends and waits; the answers that came.
    std::vector<Value> send(Dictionary payload, const std::string& url) {
        std::vector<Value> answers;
        world().requestSender.sendRequest(std::move(payload), url,
                                          [&](Value answer) { answers.push_back(std::move(answer)); });
        host.settle();
        return answers;
    }
    void relaunchWhereFails(const char* method) {
        const auto faults = std::make_shared<Faults>(method, Faults::always);
        relaunch([&](platform::Services& services) { services = failing(services, faults); });
        initialise();
    }
    std::string start() { return world().endpoints.getConfig(); }
    std::string stop() { return world().endpoints.sessionStop(); }
    std::string identity() { return world().endpoints.getIdentity(); }
};

TEST_F(RequestSenderTest, PostsJsonWithFourHeadersInOrder) {
    const auto answers = send({{"n", Null{}}, {"e", Array{}}, {"a", Array{1}}, {"d", Dictionary{}}}, start());
    EXPECT_EQ(answers, std::vector<Value>{Dictionary{}});
    const auto sent = host.http->sent().at(0);
    EXPECT_EQ(sent.method, "POST");
    EXPECT_EQ(sent.body, R"({"a":[1],"d":{}})");
    EXPECT_EQ(sent.timeout, std::chrono::seconds(60));
    EXPECT_EQ(sent.headers, (platform::HttpHeaders{{"Content-Type", "application/json"},
                                                   {"Content-Length", "16"},
                                                   {"ts", "1767225600"},
                                                   {"X-Requested-With", "acme"}}));
}

TEST_F(RequestSenderTest, GivesEveryKindOfAnswerOnce) {
    const std::vector<std::pair<Scripted, Value>> cases{
        {{.body = R"({"a":1})"}, Dictionary{{"a", 1}}},
        {{.body = "[1]"}, Array{1}},
        {{.body = "7"}, "7"},
        {{.body = "\"x\""}, "\"x\""},
        {{.body = "plain"}, "plain"},
        {{.body = ""}, ""},
        {{.status = 204, .body = std::nullopt}, {}},
        {{.status = 500}, {}},
        {{.status = std::nullopt}, {}},
        {{.body = std::string(600, '[') + std::string(600, ']')}, std::string(600, '[') + std::string(600, ']')}};
    for (const auto& [scripted, expected] : cases) {
        backend.answerOnce("/session/start", scripted);
        EXPECT_EQ(send({}, start()), std::vector<Value>{expected});
    }
}

TEST_F(RequestSenderTest, UnscramblesIdentityAnswersAndKeepsWhatItCannot) {
    const auto scrambled = world().encryptor.getEncryptedPayloadForData("id-1", "42")["payload"].stringOrEmpty();
    backend.answerOnce("/identity/v3/get", {.body = scrambled, .headers = {{"TS", "42"}}});
    EXPECT_EQ(send({{"partner", "acme"}}, identity()), std::vector<Value>{"id-1"});
    EXPECT_EQ(backend.received("/identity/v3/get").at(0).payload, (Dictionary{{"partner", "acme"}}));

    const auto withoutStamp = world().encryptor.getEncryptedPayloadForData("id-2", "")["payload"].stringOrEmpty();
    backend.answerOnce("/identity/v3/get", {.body = withoutStamp});
    EXPECT_EQ(send({}, identity()), std::vector<Value>{"id-2"});
    backend.answerOnce("/identity/v3/get", {.body = R"({"plain":true})"});
    EXPECT_EQ(send({}, identity()), (std::vector<Value>{Dictionary{{"plain", true}}}));
}

TEST_F(RequestSenderTest, DropsWhatIsNoJsonToTheLastLeafAndCallsNobody) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const auto& url : {start(), stop()}) {
        EXPECT_THAT(send({{"a", Array{Dictionary{{"x", nan}}}}}, url), IsEmpty());
        EXPECT_THAT(send({{"d", Date{1}}}, url), IsEmpty());
    }
    EXPECT_EQ(sinks.count("JSON is not valid."), 4U);
    EXPECT_THAT(backend.paths(), IsEmpty());
    EXPECT_EQ(queuedStops(), 0U);
}

TEST_F(RequestSenderTest, QueuesAFailedStopInPlainFormAndNothingElse) {
    backend.answer("/session/stop", {.status = 500});
    EXPECT_THAT(send({{"n", 1}}, stop()), ElementsAre(Value()));
    EXPECT_EQ(stored("orbinelQueue"), (Array{Dictionary{{"n", 1}}}));
    EXPECT_EQ(sinks.count("Request is added to Queue."), 1U);

    backend.answer("/session/start", {.status = std::nullopt});
    EXPECT_THAT(send({{"n", 2}}, start()), ElementsAre(Value()));
    EXPECT_EQ(queuedStops(), 1U);
}

TEST_F(RequestSenderTest, SendsAStampedStopPlainAndLosesItWhenThatFails) {
    EXPECT_THAT(send({{"q-timestamp", "99"}, {"n", 1}}, stop()), ElementsAre(Value()));
    const auto sent = backend.stops().at(0);
    EXPECT_EQ(sent.body, R"({"n":1})");
    EXPECT_EQ(sent.headers.at("ts"), "99");

    backend.answerOnce("/session/stop", {.status = 500});
    EXPECT_THAT(send({{"q-timestamp", "99"}, {"n", 1}}, stop()), IsEmpty());
    EXPECT_EQ(sinks.count("Decryption failed for the payload."), 1U);
    EXPECT_EQ(queuedStops(), 0U);
    relaunch();
    host.settle();
    EXPECT_EQ(queuedStops(), 0U);
    EXPECT_EQ(sinks.count("Dropped a queued request that can not be sent."), 1U);
}

TEST_F(RequestSenderTest, TakesTheWholeQueueOutAndPutsBackWhatFailsAgain) {
    for (int n = 1; n <= 3; ++n) world().offlineQueue.addStopRequestToQueue({{"n", n}});
    backend.answerOnce("/session/stop", {});
    backend.answerOnce("/session/stop", {.status = 503});
    int passes = 0;
    world().requestSender.sendQueuedRequests([&] { ++passes; });
    host.settle();
    EXPECT_EQ(passes, 1);
    EXPECT_THAT(backend.stops(), SizeIs(3));
    EXPECT_EQ(stored("orbinelQueue"), (Array{Dictionary{{"n", 2}}}));
}

TEST_F(RequestSenderTest, AFailedStampedStopIsQueuedAsWhatItsEnvelopeHolds) {
    auto stop = world().encryptor.getEncryptedPayloadForData(R"({"n":1})", "99");
    stop.set("q-timestamp", "99");
    world().offlineQueue.addStopRequestToQueue(stop);
    backend.answerOnce("/session/stop", {.status = 500});
    int passes = 0;
    world().requestSender.sendQueuedRequests([&] { ++passes; });
    host.settle();
    EXPECT_EQ(passes, 1);
    EXPECT_EQ(stored("orbinelQueue"), (Array{Dictionary{{"n", 1}}}));
    relaunch();
    host.settle();
    EXPECT_EQ(queuedStops(), 1U);
}

// What is stored is hostile until checked: one bad element holds up its pass and is gone at the next launch.
TEST_F(RequestSenderTest, AnElementThatCanNeverBeSentBlocksOnePassOnly) {
    host.defaults->standard()->set("orbinelQueue", Array{7, Dictionary{{"n", 1}}, "x"});
    becomeActive();
    EXPECT_THAT(backend.stops(), SizeIs(1));
    EXPECT_THAT(backend.starts(), IsEmpty());
    relaunch();
    initialise();
    host.settle();
    EXPECT_EQ(sinks.count("Dropped a queued request that can not be sent."), 2U);
    becomeActive();
    EXPECT_THAT(backend.starts(), SizeIs(1));
}

TEST_F(RequestSenderTest, RemembersAFailedConsentOnlyAfterATransportFailure) {
    const auto consent = world().endpoints.sendGDPRConsent();
    for (const auto& url : {consent, std::string("https://x.test/gdpr/set?x")}) {
        host.defaults->standard()->set(keys::savedGdprConsent, {});
        backend.answerOnce(url, {.status = 500});
        send({{"gdpr_consent", true}}, url);
        EXPECT_TRUE(stored(keys::savedGdprConsent).isAbsent());
        backend.answerOnce(url, {.status = std::nullopt});
        send({{"gdpr_consent", true}}, url);
        EXPECT_EQ(stored(keys::savedGdprConsent), true);
    }
}

TEST_F(RequestSenderTest, GoesOnWithAFullStoreAndAnswersWhenJsonCannotBeWritten) {
    relaunchWhereFails("defaults appendInFlight");
    EXPECT_THAT(send({{"n", 1}}, stop()), ElementsAre(Value()));
    EXPECT_THAT(backend.stops(), SizeIs(1));
    backend.answerOnce("/session/stop", {.status = 500});
    send({{"n", 2}}, stop());
    EXPECT_EQ(queuedStops(), 1U);

    relaunchWhereFails("json serialise");
    EXPECT_THAT(send({{"n", 1}}, stop()), ElementsAre(Value()));
    EXPECT_THAT(send({{"n", 1}}, start()), ElementsAre(Value()));
}

TEST_F(RequestSenderTest, AThrowingAnswerIsReportedAndNotCalledAgain) {
    int calls = 0;
    world().requestSender.sendRequest({}, start(), [&](const Value&) {
        ++calls;
        throw std::runtime_error("mine");
    });
    host.settle();
    EXPECT_EQ(calls, 1);
    const auto fed = sinks.feeds("sendError");
    ASSERT_THAT(fed, SizeIs(1));
    EXPECT_THAT(fed[0].data["error"].stringOrEmpty(),
                ::testing::StartsWith("mine -- function : -[OrbinelRequest sendRequest:url:success:] line : "));
}

}  // namespace
}  // namespace orbinel::testing
