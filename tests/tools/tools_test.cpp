#include <limits>

#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

/// The tools of a running world, with the wizard as the taker of its feeds.
class ToolsTest : public LibraryTest {
protected:
    ToolsTest() {
        initialise();
        reportTo(sinks, wizard);
    }
    /// As another launch would read the store.
    static TestDevices freshTestDevices() {
        auto& w = world();
        return TestDevices({w.reports, w.helper, w.session, w.endpoints, w.requestSender});
    }
    void open(const std::string& url) {
        links.handleUrl(url);
        host.settle();
    }
    void connect() { open("acme://connect_wizard/tok-1"); }
    void feed(std::string_view method, Dictionary data = {}, bool isError = false, bool shouldFeed = true) {
        world().reports.feed(
            method, [&] { return data; }, isError, shouldFeed);
        host.settle();
    }
    std::vector<Received> feeds() const { return backend.received("/api/wizard/v1/feed_data"); }
    std::vector<std::string> methodsFed() const {
        std::vector<std::string> methods;
        for (const auto& one : feeds()) methods.push_back(one.payload["method"].stringOrEmpty());
        return methods;
    }
    void ask(std::optional<Date> start, std::optional<Date> end) {
        messageCenter.getMessageCenterData(-3, start, end, [this](const Array& messages) {
            EXPECT_TRUE(host.scheduler->isMain());
            answers.push_back(messages);
            throw 1;  // an application may
        });
        host.settle();
    }

    World& w = world();
    TestDevices& testDevices = w.testDevices;
    IntegrationWizard& wizard = w.wizard;
    ToolLinks& links = w.toolLinks;
    MessageCenter& messageCenter = w.messageCenter;
    std::vector<Array> answers;
};

TEST_F(ToolsTest, TheWizardSendsFeedsFromTheConnectionOn) {
    host.defaults->standard()->set(keys::deviceLocation, Dictionary{{"latitude", 41.0}});
    feed("too early");
    connect();
    feed("for the console only", {}, false, false);
    feed("one", {{"x", Array{nan, "kept"}}, {"when", Date{1}}});

    const auto connection = backend.received("/api/wizard/v1/init_new_integration").at(0);
    EXPECT_THAT(connection.headerOrder,
                ElementsAre("Authorization", "Content-Type", "Content-Length", "X-Requested-With"));
    EXPECT_EQ(connection.headers.at("Authorization"), "Bearer tok-1");
    EXPECT_EQ(connection.headers.at("Content-Length"), std::to_string(connection.body.size()));
    EXPECT_EQ(connection.headers.at("X-Requested-With"), "acme");
    EXPECT_EQ(connection.payload["udid"], *world().helper.getUdid());
    EXPECT_EQ((*connection.payload["orbinel_attributes"].ifDictionary())["platform"], "iOS");
    ASSERT_THAT(methodsFed(), ElementsAre("deviceLocation", "one"));
    EXPECT_EQ(feeds().back().body, R"({"method":"one","data":{"x":["kept"]}})");
}

TEST_F(ToolsTest, TheWizardIsConnectedByTheStatus200Alone) {
    for (const std::optional<int> status : {std::optional(201), std::optional(500), std::optional<int>()}) {
        backend.answerOnce("/init_new_integration", {.status = status});
        connect();
        EXPECT_FALSE(wizard.isConnectionEstablished());
    }
    connect();
    backend.answer("/feed_data", {.status = 500});
    for (const char* name : {"one", "two"}) feed(name);
    EXPECT_THAT(methodsFed(), ElementsAre("one", "two"));  // a failed feed neither comes again nor ends the connection
}

TEST_F(ToolsTest, TheWizardKeepsTheOrderAndABoundWhileTheNetworkIsSlow) {
    connect();
    backend.answerOnce("/feed_data", {.never = true});
    feed("lost");
    for (int i = 0; i < 30; ++i) feed("large", {{"n", i}, {"text", std::string(100'000, 'x')}});
    EXPECT_THAT(feeds(), SizeIs(1));
    host.advance(60);
    ASSERT_THAT(feeds(), SizeIs(11));
    for (std::size_t i = 1; i < 11; ++i) {
        EXPECT_EQ((*feeds()[i].payload["data"].ifDictionary())["n"], static_cast<int>(19 + i));
    }
    feed("beyond the bound by itself", {{"text", std::string(2'000'000, 'x')}});
    EXPECT_THAT(feeds(), SizeIs(12));
}

TEST_F(ToolsTest, TheWizardDisconnectsAndSendsNoMore) {
    connect();
    host.defaults->standard()->set(keys::deviceLocation, Dictionary{{"latitude", 41.0}});
    backend.answerOnce("/feed_data", {.never = true});
    for (const char* name : {"under way", "waiting"}) feed(name);
    wizard.terminateConnection();
    feed("too late");
    host.advance(60);
    EXPECT_EQ(backend.received("/api/wizard/v1/disconnect").at(0).headers.at("Authorization"), "Bearer tok-1");
    EXPECT_TRUE(stored(keys::deviceLocation).isAbsent());
    EXPECT_THAT(methodsFed(), ElementsAre("under way"));

    backend.answerOnce("/init_new_integration", {.never = true});
    connect();
    wizard.terminateConnection();  // before the answer
    connect();
    world().helper.setSdkDisabled(true);
    backend.clear();
    connect();
    feed("one");
    wizard.terminateConnection();
    host.settle();
    EXPECT_THAT(backend.paths(), IsEmpty());
}

TEST_F(ToolsTest, ATestDevicePrintsFeedsButNoToken) {
    testDevices.markDeviceAsDebug();
    feed("tagEvent", {{"name", "line\nbreak"}, {"x", nan}}, false, false);
    feed("sendError", {{"error", "e"}}, true);
    feed("sessionStartResquest", {{"start_request", "{\n  \"a\": \"b  c\",\n  \"d\": {}\n}"}}, false, false);
    feed("sessionStopRequest", {{"stop_encrypted", Dictionary{{"payload", "x"}}}, {"ts", "1"}}, false, false);
    EXPECT_THAT(host.console->lines(),
                ElementsAre(R"([ORBINEL][DEBUG][tagEvent]: {"name":"line\nbreak"})",
                            R"([ORBINEL][ERROR][sendError]: {"error":"e"})",
                            R"([ORBINEL][DEBUG][sessionStartResquest] { "a": "b  c", "d": {} })",
                            R"([ORBINEL][DEBUG][sessionStopRequest] {"stop_encrypted":{"payload":"x"},"ts":"1"})"));
    Orbinel::setDevelopmentLog(true);
    backend.answer("/feed_data", {.status = std::nullopt});
    connect();
    feed("one");
    EXPECT_THAT(host.console->lines(), Each(::testing::Not(::testing::HasSubstr("tok-1"))));
}

TEST_F(ToolsTest, ATestDeviceRegistersOnceAtTheNextActivation) {
    backend.answer("/test_device/add", {.status = 500});
    open("acme://test_device/abc");
    EXPECT_FALSE(testDevices.isTestDevice());
    for (int activation = 0; activation < 2; ++activation) testDevices.addWaitingTestDevice();
    host.settle();
    const auto registrations = backend.received("/api/v1/test_device/add");
    ASSERT_THAT(registrations, SizeIs(1));
    EXPECT_EQ(registrations[0].payload,
              (Dictionary{{"udid", *world().helper.getUdid()}, {"partner_name", "acme"}, {"token", "abc"}}));
    EXPECT_TRUE(testDevices.isTestDevice());
    EXPECT_TRUE(freshTestDevices().isTestDevice());
    testDevices.setTestDeviceToken("later");
    testDevices.addTestDevice("earlier");
    EXPECT_EQ(testDevices.testDeviceToken(), "later");
}

TEST_F(ToolsTest, OnlyTheStoredTextCountsAsYes) {
    AutoIntegration autoIntegration({world().reports, world().helper});
    for (const Value& other : {Value("true"), Value(1), Value(true), Value("")}) {
        host.defaults->standard()->set(keys::debugCheck, other);
        host.defaults->standard()->set(keys::autoIntegration, other);
        EXPECT_FALSE(freshTestDevices().isTestDevice());
        EXPECT_FALSE(autoIntegration.isAutoIntegrationEnabled());
    }
    for (const bool start : {true, false}) {
        autoIntegration.startAutoIntegration(start);
        EXPECT_EQ(autoIntegration.isAutoIntegrationEnabled(), start);
    }
}

TEST_F(ToolsTest, ToolLinksAreToldFromOthers) {
    const std::optional<std::string> none;
    const std::vector<std::pair<std::string, std::optional<std::string>>> tokens{
        {"acme://test_device/abc", "abc"},    {"acme://test_device/abc/more", "abc"},
        {"https://test_device/a?x", "a?x"},   {"://test_device/a%20b", "a%20b"},
        {"acme://test_device/", ""},          {"acme://test_device/http://x", "http"},
        {"acme://test_device", none},         {"", "before"},
        {"test_device/abc", "before"},        {"acme:test_device/abc", "before"},
        {"acme://Test_Device/x", "before"},   {"acme:///test_device/abc", "before"},
        {"acme://test_device/a b", "before"}, {"acme://connect_wizard/a\r\nX: 1", "before"},
    };
    for (const auto& [url, token] : tokens) {
        testDevices.setTestDeviceToken("before");
        open(url);
        EXPECT_EQ(testDevices.testDeviceToken(), token) << url;
    }
    EXPECT_THAT(backend.paths(), IsEmpty());
    for (const char* url : {"acme://connect_wizard", "acme://connect_wizard/abc/x"}) open(url);
    const auto connections = backend.received("/init_new_integration");
    EXPECT_EQ(connections.at(0).headers.at("Authorization"), "Bearer ");
    EXPECT_EQ(connections.at(1).headers.at("Authorization"), "Bearer abc");
}

TEST_F(ToolsTest, TheMessageCenterPassesTheRecordsOn) {
    world().reports.wizardFeed.unbind();
    world().reports.wizardFeed.bind(sinks);
    backend.answer("/message_center/v2/sdk/get", {.body = R"([{"id":1},"x"])"});
    ask(Date{1'000.9}, Date{1e300});
    const auto asked = backend.received("/api/message_center/v2/sdk/get").at(0).payload;
    const auto udid = *world().helper.getUdid();
    EXPECT_EQ(asked, (Dictionary{{"partner_name", "acme"},
                                 {"udid", udid},
                                 {"orbinel_id", udid},
                                 {"start_date", 1'000},
                                 {"end_date", std::numeric_limits<std::int64_t>::max()},
                                 {"limit", -3}}));
    EXPECT_THAT(answers, ElementsAre(Array{Dictionary{{"id", 1}}, "x"}));
    const auto fed = sinks.feeds("getMessageCenterData");
    ASSERT_THAT(fed, SizeIs(2));
    EXPECT_EQ(fed[0].data, asked);
    EXPECT_TRUE(fed[0].shouldFeed && !fed[1].shouldFeed);
}

TEST_F(ToolsTest, TheMessageCenterAnswersWhatIsNoListWithAnEmptyOneAndAFailureNotAtAll) {
    ask(std::nullopt, Date{2});
    ask(Date{1}, std::nullopt);
    ask(Date{1}, Date{1});
    ask(Date{2}, Date{nan});
    EXPECT_THAT(answers, SizeIs(4));
    EXPECT_THAT(backend.paths(), IsEmpty());
    for (const char* body : {R"({"error":"no"})", "text", "", "[1"}) {
        backend.answerOnce("/message_center/v2/sdk/get", {.body = body});
        ask(Date{1}, Date{2});
    }
    for (const auto& failure : {Scripted{.status = 500, .body = "[]"}, Scripted{.status = std::nullopt}}) {
        backend.answerOnce("/message_center/v2/sdk/get", failure);
        ask(Date{1}, Date{2});
    }
    EXPECT_THAT(answers, SizeIs(8));
    EXPECT_THAT(answers, Each(IsEmpty()));
    world().session.setPartnerName("");
    ask(Date{1}, Date{2});
    EXPECT_THAT(answers, SizeIs(9));
}

}  // namespace
}  // namespace orbinel::testing
