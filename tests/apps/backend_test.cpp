#include <algorithm>
#include <future>
#include <set>
#include <thread>

#include "tests/apps/backend_fixture.hpp"

namespace orbinel::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

TEST_F(Backend, DecodesWhatAClientScrambled) {
    const std::string json =
        R"({"partner_name":"acme","custom_events":[{"event_name":"ž"}],"session_duration":90,"reason":"default"})";
    for (const std::string path : {stop, identity, messages, "/api//logging/sdk/v2"}) {
        const auto response = post(path, envelope(json));
        ASSERT_TRUE(response) << path;
        EXPECT_EQ(response->status, 200) << path;
        const auto request = last();
        EXPECT_EQ(request["path"].GetString(), path);
        EXPECT_EQ(compact(request["payload"]), json) << path;
        EXPECT_EQ(request["body"].GetString(), envelope(json)) << path;
        EXPECT_STREQ(request["headers"]["ts"].GetString(), timestamp);
        EXPECT_FALSE(request.HasMember("problem")) << path;
    }
    EXPECT_EQ(post(stop, R"({"custom_events":[]})")->status, 200);
    EXPECT_THAT(end(), AllOf(HasSubstr("POST /api/v3/session/stop  acme  1 event, 90 s, reason default  ("),
                             HasSubstr("  plain, 0 events  ("), HasSubstr("ended after 5 requests\n")));
}

// Whatever arrives: an answer, a clause that says what was wrong, and a backend that goes on.
TEST_F(Backend, SurvivesGarbageAndSaysWhatItWas) {
    struct Case {
        std::string path;
        std::string body;
        httplib::Headers headers;
        int status;
        std::string problem;
    };
    const std::string feed = "/api/wizard/v1/feed_data";
    const httplib::Headers usual = usualHeaders();
    const std::vector<Case> cases = {
        {start, "", usual, 200, "the body is empty"},
        {start, "{\"a\":\n}", usual, 200, "line 2, offset"},
        {start, "[1]", usual, 200, "not a JSON object"},
        {start, std::string(100'000, '['), usual, 200, "deeper"},
        {start, "{\"a\":\"\xff\"}", usual, 200, "not JSON"},
        {start, "{}", {{"X-Requested-With", "a"}}, 200, "no ts header"},
        {start, "{}", {{"ts", "1"}}, 200, "no X-Requested-With header"},
        {start, "{}", {{"ts", "now"}, {"X-Requested-With", "a"}}, 200, "\"now\" is not a number of seconds"},
        {start, "{\"first_run\":3}", usual, 200, "\"first_run\" is not true or false"},
        {feed, "{}", usual, 401, "no token"},
        {feed, "[]", {{"Authorization", "Bearer t"}}, 404, "no connection is open"},
        {consentSet, "[]", usual, 400, "no device"},
        {consentSet, R"({"target":{"udid":{}}})", usual, 400, "no device"},
        {consentGet, "{\"target\":{\"udid\":\"" + std::string(1000, 'u') + "\"}}", usual, 400, "no device"},
        {"/recommend", "", usual, 404, "reached by GET"},
        {stop, envelope("{\"custom_events\":7}"), usual, 200, "\"custom_events\" is not a list"},
        {stop, envelope("[]"), usual, 200, "not a JSON object"},
        {stop, envelope("no JSON"), usual, 400, "unscrambled payload is not JSON"},
        {stop, envelope("{}"), {{"ts", "5"}, {"X-Requested-With", "a"}}, 400, "time stamp \"5\""},
        {stop, "{\"payload\":\"*\"}", usual, 400, "not base64"},
        {stop, "{\"payload\":[]}", usual, 400, "not a text"},
        {stop, "", usual, 400, "the body is empty"},
        {stop, "\"text\"", usual, 400, "no envelope"},
        {identity, "{\"identifiers\":{}}", usual, 400, "no \"payload\""},
        {identity, envelope("{\"identifiers\":[],\"orbinel_id\":1}"), usual, 200, "\"identifiers\" is not an object"},
        {"/api//logging/sdk/v2", envelope(R"({"logs":{"log_type":1}})"), usual, 200, "\"logs\" is not a list"},
        {messages, envelope(R"({"limit":"ten"})"), usual, 200, "\"limit\" is not a whole number"},
        {"/api/logging/sdk/v2", "{}", usual, 404, "/api//logging/sdk/v2"},
        {"/api/v3/session/stop/", "{}", usual, 404, "unknown path"},
        {"/" + std::string(5000, 'x'), "{}", usual, 404, "unknown path"},
    };
    for (const auto& [path, body, headers, status, problem] : cases) {
        const auto response = post(path, body, headers);
        ASSERT_TRUE(response) << problem;
        EXPECT_EQ(response->status, status) << problem;
        if (status != 200) {
            EXPECT_TRUE(parsed(response->body)["error"].IsString()) << problem;
        }
        const auto request = last();
        ASSERT_TRUE(request.HasMember("problem")) << problem;
        EXPECT_THAT(request["problem"].GetString(), HasSubstr(problem));
    }
    EXPECT_EQ(get(start)->status, 404);
    post("/\x1b[2J", "{}");
    EXPECT_THAT(end(), AllOf(Not(HasSubstr("\x1b")), HasSubstr("ended after")));
}

TEST_F(Backend, AnswersFromFilesAsTheyAreEdited) {
    EXPECT_STRNE(parsed(post(start, "{}")->body)["session_id"].GetString(), "${uuid}");
    writeAnswer("session_start.json", R"({"a": "${uuid}", "b": "${uuid}", "page": "${origin}/x"})");
    const auto first = parsed(post(start, "{}")->body);
    const auto second = parsed(post(start, "{}")->body);
    EXPECT_EQ(first["a"], first["b"]);
    EXPECT_NE(first["a"], second["a"]);
    EXPECT_EQ(first["page"].GetString(), origin_ + "/x");

    writeAnswer("session_start.json", "{\n\"a\": }");
    EXPECT_TRUE(parsed(post(start, "{}")->body).HasMember("sdk_disabled"));
    std::filesystem::remove(answers_ / "session_start.json");
    std::filesystem::create_directory(answers_ / "session_start.json");
    EXPECT_TRUE(parsed(post(start, "{}")->body).HasMember("sdk_disabled"));
    end();
    EXPECT_THAT(tool_->err(),
                AllOf(HasSubstr("session_start.json is not used, line 2, offset 7"), HasSubstr("directory")));
}

TEST_F(Backend, PrefersTheFilesOfAPartner) {
    writeAnswer("session_stop.json", R"({"to": "everybody"})");
    std::filesystem::create_directory(answers_ / "acme");
    writeAnswer("acme/session_stop.json", R"({"to": "acme"})");
    const auto answerTo = [&](const std::string& partner) {
        const auto response = post(stop, envelope("{}"), {{"ts", timestamp}, {"X-Requested-With", partner}});
        return std::string(parsed(response->body)["to"].GetString());
    };
    EXPECT_EQ(answerTo("acme"), "acme");
    for (const auto* other : {"another", "../acme", "./acme", ".", "", "ACME", "acme/"}) {
        EXPECT_EQ(answerTo(other), "everybody") << other;
    }
}

TEST_F(Backend, GivesEachPersonOneIdentity) {
    const auto idFor = [&](const std::string& json, const std::string& partner = "acme") {
        const auto response = post(identity, envelope("{\"partner\":\"" + partner + "\"," + json.substr(1)));
        ToolProcess decode({"decode", "--text", "--ts", response->get_header_value("ts")}, response->body);
        auto id = decode.out();
        id.pop_back();
        return id;
    };
    const auto anna = idFor(R"({"identifiers":{"em":"a"}})");
    EXPECT_THAT(anna, MatchesRegex("[0-9a-f-]{36}"));
    const auto ben = idFor(R"({"orbinel_id":"own-1","identifiers":{"em":"b"}})");
    EXPECT_NE(ben, anna) << "identifiers come before the request's own ID";
    EXPECT_NE(idFor(R"({"identifiers":{"em":"a"}})", "another"), anna);
    EXPECT_EQ(idFor(R"({"orbinel_id":"x","identifiers":{"pn":"1","em":"a"}})"), anna);
    EXPECT_EQ(idFor(R"({"identifiers":{"pn":"1"}})"), anna);
    EXPECT_EQ(idFor(R"({"identifiers":{"uuid":7}})"), idFor(R"({"identifiers":{"uuid":"7"}})"));
    // Two who turn out to be one: both names, and all that either is known by, lead to whoever came first.
    EXPECT_EQ(idFor(R"({"identifiers":{"em":"b","pn":"1"}})"), anna);
    EXPECT_EQ(idFor(R"({"identifiers":{"em":"b"}})"), anna);
    const auto people = remembered("identities");
    ASSERT_EQ(people.Size(), 3u);
    EXPECT_EQ(compact(people[0]["identifiers"]), R"({"em":["a","b"],"pn":["1"]})");

    EXPECT_EQ(idFor(R"({"orbinel_id":"own-1.b","identifiers":{}})"), "own-1.b");
    for (const auto* unusable :
         {R"({"orbinel_id":"-x"})", R"({"orbinel_id":5})", R"({"identifiers":{"em":{},"pn":""}})"}) {
        EXPECT_THAT(idFor(unusable), MatchesRegex("[0-9a-f-]{36}")) << unusable;
    }
    EXPECT_EQ(remembered("identities").Size(), 3u);
    remove("identities");
    EXPECT_EQ(idFor(R"({"identifiers":{"em":"b"}})"), ben) << "the same in every run";
    writeAnswer("identity_get.json", R"({"id": "everybody"})");
    EXPECT_EQ(idFor(R"({"identifiers":{"em":"a"}})"), "everybody");
}

TEST_F(Backend, RemembersTheConsentsOfEachDevice) {
    const auto set = [&](const std::string& device, const std::string& consents) {
        return post(consentSet, "{\"target\":{\"udid\":\"" + device + "\"}," + consents + "}")->status;
    };
    const auto consentsOf = [&](const std::string& device) {
        return compact(parsed(post(consentGet, R"({"target":{"udid":")" + device + "\"}}")->body));
    };
    const std::string neutral = R"({"gdpr_consent":true,"mobile_gdpr_consent":true})";
    EXPECT_EQ(consentsOf("a"), neutral);
    EXPECT_EQ(set("a", R"("gdpr_consent":false)"), 200);
    EXPECT_EQ(lastSummary(), "gdpr no, device a");
    EXPECT_EQ(parsed(consentsOf("a"))["gdpr_consent"], rapidjson::Value(false));
    EXPECT_EQ(parsed(consentsOf("a"))["mobile_gdpr_consent"], rapidjson::Value(true));
    set("a", R"("mobile_gdpr_consent":0)");
    set("a", R"("gdpr_consent":1,"mobile_gdpr_consent":"maybe")");
    EXPECT_EQ(parsed(consentsOf("a"))["gdpr_consent"], rapidjson::Value(true));
    EXPECT_EQ(parsed(consentsOf("a"))["mobile_gdpr_consent"], rapidjson::Value(false));
    EXPECT_EQ(consentsOf("b"), neutral);

    // A refused post is none.
    override(R"({"path":"/api/v1/privacy/gdpr/consent/set","status":503,"times":1})");
    EXPECT_EQ(set("b", R"("gdpr_consent":false)"), 503);
    EXPECT_EQ(consentsOf("b"), neutral);
    EXPECT_EQ(compact(remembered("consents")), R"([{"udid":"a","gdpr_consent":true,"mobile_gdpr_consent":false}])");
    writeAnswer("consent_get.json", "[7]");
    EXPECT_EQ(consentsOf("a"), "[7]");
}

TEST_F(Backend, RecommendsWhatTheParametersChoose) {
    writeAnswer("recommendations.json", R"({"campaigns": {"1": {"products": ["a", "b", "d"]}, "2": {}, "bad": 5},
        "products": [{"product_id": "a", "category": ["Mugs", "Kitchen"], "currency": "EUR"},
                     {"product_id": "b", "category": "Lights", "currency": "EUR"},
                     {"product_id": "c", "category": ["Kitchen"], "currency": "USD"},
                     {"product_id": "d", "category": 5}, 7]})");
    const auto chosen = [&](const std::string& query) {
        const auto response = get("/recommend?" + query);
        if (response->status != 200) return std::to_string(response->status);
        std::string ids;
        const auto answer = parsed(response->body);
        for (const auto& product : answer["data"].GetArray()) ids += product["product_id"].GetString();
        return ids;
    };
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"id=1", "abd"},
        {"id=2", "abcd"},
        {"id=2&currency=EUR", "ab"},
        {"id=2&currency=%7Bcurrency%7D&product=%7BproductID%7D&categories=%7Bcategory%7D", "abcd"},
        {"id=2&product=a,c,none", "bd"},
        {"id=2&filter=%5Bcategory%5D%5B=%5D%5BMugs%5D*%5BCATEGORY%5D%5B=%5D%5BLights%5D", "ab"},
        {"id=2&filter=%5Bcategory%5D%5B!=%5D%5BKitchen%5D", "bd"},
        {"id=2&filter=%5Bcategory%5D%5B=%5D%5B%7Bcategory%7D%5D", "abcd"},
        {"id=2&filter=%5Bcategory%5D%5B=%5D%5B%20%5D&categories=%5B%22%20%22%5D", "abcd"},
        {"id=2&categories=%5B%22Lights%22,%22Mugs%22%5D", "ab"},
        {"id=2&currency=GBP", ""},
    };
    for (const auto& [query, expected] : cases) EXPECT_EQ(chosen(query), expected) << query;
    for (const auto* garbled : {"id=2&categories=Mugs", "id=2&filter=%5Bcategory%5D%5B~%5D%5BMugs%5D",
                                "id=2&filter=%5Bcategory%5D%5B", "id=2&product=%ff"}) {
        EXPECT_EQ(chosen(garbled), "400") << garbled;
    }
    for (const auto* unknown : {"id=3", "id=bad", "currency=EUR"}) EXPECT_EQ(chosen(unknown), "404") << unknown;
    chosen("id=1&currency=EUR");
    EXPECT_EQ(lastSummary(), "campaign 1, 2 products");
    EXPECT_STREQ(last()["query"].GetString(), "id=1&currency=EUR");
    writeAnswer("recommendations.json", R"({"campaigns": {"1": {}}, "products": {}})");
    EXPECT_EQ(chosen("id=1"), "");
}

TEST_F(Backend, SelectsTheMessagesOfAPeriod) {
    writeAnswer("message_center.json",
                R"([{"n":1,"sent_at":100},{"n":2,"sent_at":200.5},{"n":3},{"n":4,"sent_at":300}])");
    const auto selected = [&](const std::string& json) {
        std::string numbers;
        const auto answer = parsed(post(messages, envelope(json))->body);
        for (const auto& message : answer.GetArray()) numbers += std::to_string(message["n"].GetInt());
        return numbers;
    };
    EXPECT_EQ(selected("{}"), "1234");
    EXPECT_EQ(selected(R"({"start_date":100,"end_date":300,"limit":10})"), "1234");
    EXPECT_EQ(selected(R"({"start_date":101,"end_date":299,"limit":10})"), "23");
    EXPECT_EQ(lastSummary(), "limit 10, from 101 to 299, 2 of 4 messages");
    EXPECT_EQ(selected(R"({"start_date":150,"limit":1})"), "2");
    EXPECT_EQ(selected(R"({"limit":-1})"), "");
    writeAnswer("message_center.json", R"({"error":"none"})");
    EXPECT_EQ(post(messages, envelope("{}"))->body, R"({"error":"none"})");
}

TEST_F(Backend, ShowsWhatEachWizardTokenWasFed) {
    const auto send = [&](const std::string& what, const std::string& token, const std::string& body) {
        auto headers = usualHeaders();
        headers.emplace("Authorization", "Bearer " + token);
        return post("/api/wizard/v1/" + what, body, headers)->status;
    };
    EXPECT_EQ(send("init_new_integration", "", "{}"), 401);
    EXPECT_EQ(send("feed_data", "one", "{}"), 404);
    EXPECT_EQ(send("init_new_integration", "one", R"({"udid":"U","orbinel_attributes":{"model":"m"}})"), 200);
    EXPECT_EQ(send("init_new_integration", "two", "[]"), 200);
    EXPECT_EQ(send("feed_data", "one", R"({"method":"tagEvent","data":{"event_name":"a"}})"), 200);
    EXPECT_EQ(lastSummary(), R"(tagEvent {"event_name":"a"}, token one)");
    EXPECT_EQ(send("feed_data", "two", R"({"method":5,"data":[]})"), 200);
    EXPECT_EQ(send("feed_data", "one", "{\"method\":\"" + std::string(100'000, 'm') + "\"}"), 200);
    EXPECT_LT(lastSummary().size(), 200u);
    EXPECT_EQ(send("disconnect", "one", "{}"), 200);
    EXPECT_EQ(send("feed_data", "one", "{}"), 404);
    EXPECT_EQ(send("disconnect", "one", "{}"), 404);

    const auto connections = remembered("wizard");
    ASSERT_EQ(connections.Size(), 2u);
    EXPECT_STREQ(connections[0]["token"].GetString(), "one");
    EXPECT_FALSE(connections[0]["connected"].GetBool());
    EXPECT_TRUE(connections[1]["connected"].GetBool());
    EXPECT_EQ(compact(connections[0]["attributes"]), R"({"model":"m"})");
    ASSERT_EQ(connections[0]["feeds"].Size(), 2u);
    EXPECT_EQ(compact(connections[0]["feeds"][0]["data"]), R"({"event_name":"a"})");
    EXPECT_EQ(connections[1]["feeds"].Size(), 1u);
}

TEST_F(Backend, KeepsTheLastDiagnosticRecords) {
    const std::string batch =
        R"({"logs":[{"log_type":"inapp","message":"one"},{"log_type":"inapp"},{"log_type":""},9]})";
    post("/api//logging/sdk/v2", envelope(batch));
    EXPECT_EQ(lastSummary(), "4 records: 2 inapp, 2 without log_type");
    EXPECT_STREQ(remembered("logs")[0]["record"]["message"].GetString(), "one");
    EXPECT_EQ(remembered("logs")[3]["record"].GetInt(), 9);
    std::string many = "1";
    for (int i = 1; i < 10'000; ++i) many += ",1";
    post("/api//logging/sdk/v2", envelope("{\"logs\":[" + many + "]}"));
    EXPECT_EQ(remembered("logs").Size(), 10'000u);
    EXPECT_EQ(remembered("logs")[0]["record"].GetInt(), 1);
}

TEST_F(Backend, OverridesAnswersOnRequest) {
    EXPECT_EQ(override(R"({"path":"/api/v3/session/stop","status":503,"times":2,"headers":{"Retry-After":"9"}})"), 200);
    std::vector<int> statuses;
    for (int i = 0; i < 3; ++i) statuses.push_back(post(stop, envelope("{}"))->status);
    EXPECT_THAT(statuses, ElementsAre(503, 503, 200));

    override(R"({"path":"/own/page","body":"<p>","headers":{"Content-Type":"text/html"}})");
    const auto page = get("/own/page");
    EXPECT_EQ(page->body, "<p>");
    EXPECT_EQ(page->get_header_value("Content-Type"), "text/html");
    override(R"({"path":"/api/v3/session/start","body":{"sdk_disabled":true}})");
    EXPECT_EQ(post(start, "{}")->body, R"({"sdk_disabled":true})");
    override(R"({"path":"/api/identity/v3/get","body":"new-1","scramble":true})");
    const auto scrambledAnswer = post(identity, envelope("{}"));
    EXPECT_EQ(scrambledAnswer->body, tool::scramble("new-1", scrambledAnswer->get_header_value("ts")));
    override(R"({"path":"/api/v3/session/stop","status":204})");
    EXPECT_EQ(post(stop, envelope("{}"))->body, "");

    EXPECT_EQ(remove("answer"), 200);
    EXPECT_EQ(get("/own/page")->status, 404);
    for (const std::string refused :
         {"", "[]", "{}", R"({"path":"x"})", R"({"path":"/x","status":"503"})", R"({"path":"/x","status":99})",
          R"({"path":"/x","times":0})", R"({"path":"/x","delay":-1})", R"({"path":"/x","headers":[1]})",
          R"({"path":"/x","headers":{"a":1}})", R"({"path":"/x","statsu":500})"}) {
        EXPECT_EQ(override(refused), 400) << refused;
    }
}

TEST_F(Backend, DelaysOneAnswerWithoutHoldingUpOthersOrItsEnd) {
    override(R"({"path":"/api/v3/session/stop","delay":600000})");
    auto delayed = std::async(std::launch::async, [this] { return post(stop, envelope("{}")); });
    while (received().Size() == 0) std::this_thread::yield();
    EXPECT_EQ(post(start, "{}")->status, 200);
    EXPECT_THAT(end(), HasSubstr("ended after 2 requests"));
    delayed.wait();
}

TEST_F(Backend, ServesManyClientsAtOnce) {
    constexpr int clients = 8;
    constexpr int each = 50;
    std::vector<std::thread> threads;
    for (int client = 0; client < clients; ++client) {
        threads.emplace_back([this, client] {
            httplib::Client connection(origin_);
            connection.set_keep_alive(true);
            for (int i = 0; i < each; ++i) {
                const auto json = "{\"n\":" + std::to_string(client * each + i) + "}";
                EXPECT_TRUE(connection.Post(stop, usualHeaders(), envelope(json), "application/json"));
                if (i % 10 == 0) {
                    EXPECT_TRUE(connection.Get("/inspect/requests?since=" + std::to_string(i)));
                }
            }
        });
    }
    for (auto& thread : threads) thread.join();

    std::set<int> numbers;
    std::uint64_t id = 0;
    const auto requests = received();
    for (const auto& request : requests.GetArray()) {
        EXPECT_EQ(request["id"].GetUint64(), ++id);
        numbers.insert(request["payload"]["n"].GetInt());
    }
    EXPECT_EQ(numbers.size(), static_cast<std::size_t>(clients * each));
    const auto out = end();
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), clients * each + 2) << "a line each, the first and the last";
}

TEST_F(Backend, KeepsTheLastTenThousand) {
    httplib::Client connection(origin_);
    connection.set_keep_alive(true);
    connection.set_tcp_nodelay(true);
    for (int i = 0; i < 10'003; ++i) ASSERT_TRUE(connection.Post("/x", usualHeaders(), "{}", "application/json"));
    const auto requests = received();
    EXPECT_EQ(requests.Size(), 10'000u);
    EXPECT_EQ(requests[0]["id"].GetInt(), 4);
    EXPECT_EQ(received("?since=10000").Size(), 3u);
    EXPECT_EQ(received("?since=99999").Size(), 0u);

    const auto run = [&] { return connection.Get("/inspect/requests?since=99999")->get_header_value("X-Inspect-Run"); };
    const auto before = run();
    EXPECT_EQ(connection.Delete("/inspect/requests")->status, 200);
    EXPECT_NE(run(), before);
    post(stop, envelope("{}"));
    EXPECT_EQ(received()[0]["id"].GetInt(), 10'004);
}

// A page may run its own inline scripts and navigate to the library's scheme; anything else that it could do, or any
// other file that it could be, would be an attack that our own tool made possible.
TEST_F(Backend, ServesThePagesOfMessagesAndNothingElse) {
    writeAnswer("banner-2.html", "<p>first");
    const auto pathOf = [](const std::string& name) { return "/templates/" + name + "/UD1/anna-1/en"; };
    const auto page = get(pathOf("banner-2"), {});
    EXPECT_EQ(page->body, "<p>first");
    EXPECT_EQ(page->get_header_value("Content-Type"), "text/html; charset=utf-8");
    EXPECT_THAT(page->get_header_value("Content-Security-Policy"),
                AllOf(HasSubstr("default-src 'none'"), HasSubstr("script-src 'unsafe-inline';"),
                      HasSubstr("style-src 'unsafe-inline';"), HasSubstr("frame-src orbinelurl:;")));
    EXPECT_EQ(lastSummary(), "page banner-2, device UD1, user anna-1, language en");
    EXPECT_FALSE(received()[0].HasMember("problem"));
    writeAnswer("banner-2.html", "<p>edited");
    EXPECT_EQ(get(pathOf("banner-2"))->body, "<p>edited");
    EXPECT_EQ(get("/templates/banner-2/UD1/anna-1/")->status, 200);  // of a device without a language

    const auto outside = answers_.string() + "-outside.html";
    std::ofstream(outside) << "secret";
    std::filesystem::create_directory(answers_ / "folder.html");
    writeAnswer("BIG.html", "reachable by no name");
    const auto up = "../" + answers_.filename().string() + "-outside";
    for (const auto& path :
         {pathOf("unknown"), pathOf("folder"), pathOf("BIG"), pathOf(up), pathOf("..%2F" + up.substr(3)),
          pathOf("banner-2.html"), pathOf("banner-2%00"), pathOf(""), pathOf(std::string(5000, 'a')),
          std::string("/templates/banner-2"), std::string("/templates/banner-2/UD1//en"), pathOf("banner-2") + "/x"}) {
        const auto response = get(path);
        ASSERT_TRUE(response) << path;
        EXPECT_EQ(response->status, 404) << path;
        EXPECT_THAT(response->body, Not(HasSubstr("secret"))) << path;
    }
    EXPECT_EQ(post(pathOf("banner-2"), "{}")->status, 404);
    EXPECT_STREQ(last()["problem"].GetString(), "a page is reached by GET, not by POST");
    std::filesystem::remove(outside);
}

TEST_F(Backend, SharesItsPortWithNobody) {
    ToolProcess second({"backend", "--port", origin_.substr(origin_.rfind(':') + 1)});
    EXPECT_EQ(second.wait(), 1);
    EXPECT_THAT(second.err(), HasSubstr("cannot be used"));
}

}  // namespace
}  // namespace orbinel::test
