#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <optional>
#include <set>
#include <thread>

#include "tests/apps/tool_process.hpp"

namespace {

using orbinel::test::scrambled;
using orbinel::test::ToolProcess;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

constexpr const char* stop = "/api/v3/session/stop";
constexpr const char* start = "/api/v3/session/start";
constexpr const char* identity = "/api/identity/v3/get";
constexpr const char* timestamp = "1767225690";

rapidjson::Document parsed(const std::string& text) {
    rapidjson::Document document;
    document.Parse(text.data(), text.size());
    EXPECT_FALSE(document.HasParseError()) << text;
    return document;
}

std::string compact(const rapidjson::Value& value) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    value.Accept(writer);
    return buffer.GetString();
}

std::string envelope(const std::string& json) { return "{\"payload\":\"" + scrambled(json, timestamp) + "\"}"; }

httplib::Headers usualHeaders() { return {{"ts", timestamp}, {"X-Requested-With", "acme"}}; }

class Backend : public testing::Test {
protected:
    Backend() {
        std::string name = (std::filesystem::temp_directory_path() / "orbinel-answers-XXXXXX").string();
        answers_ = mkdtemp(name.data());
        tool_.emplace(std::vector<std::string>{"backend", "--port", "0", "--answers", answers_.string()});
        const auto line = tool_->firstLine();
        EXPECT_THAT(line, MatchesRegex("listening on http://127\\.0\\.0\\.1:[0-9]+"));
        origin_ = line.substr(line.rfind(' ') + 1);
    }
    ~Backend() override { std::filesystem::remove_all(answers_); }

    httplib::Result post(const std::string& path, const std::string& body, httplib::Headers headers = usualHeaders()) {
        return httplib::Client(origin_).Post(path, headers, body, "application/json");
    }

    rapidjson::Document received(const std::string& query = "") {
        const auto response = httplib::Client(origin_).Get("/inspect/requests" + query);
        return parsed(response ? response->body : "[]");
    }

    httplib::Result override(const std::string& json) {
        return httplib::Client(origin_).Put("/inspect/answer", json, "application/json");
    }

    void writeAnswer(const std::string& file, const std::string& text) { std::ofstream(answers_ / file) << text; }

    /// Ends the backend and gives all that it printed.
    std::string end() {
        tool_->signal(SIGTERM);
        EXPECT_EQ(tool_->wait(), 0);
        return tool_->out();
    }

    std::filesystem::path answers_;
    std::string origin_;
    std::optional<ToolProcess> tool_;
};

TEST_F(Backend, DecodesWhatAClientScrambled) {
    const std::string json =
        R"({"partner_name":"acme","custom_events":[{"event_name":"ž"}],"session_duration":90,"reason":"default"})";
    for (const std::string path : {stop, identity, "/api/message_center/v2/sdk/get", "/api//logging/sdk/v2"}) {
        const auto response = post(path, envelope(json));
        ASSERT_TRUE(response) << path;
        EXPECT_EQ(response->status, 200) << path;
        const auto requests = received();
        const auto& last = requests[requests.Size() - 1];
        EXPECT_EQ(last["path"].GetString(), path);
        EXPECT_EQ(compact(last["payload"]), json) << path;
        EXPECT_EQ(last["body"].GetString(), envelope(json)) << path;
        EXPECT_STREQ(last["headers"]["ts"].GetString(), timestamp);
        EXPECT_FALSE(last.HasMember("problem")) << path;
    }
    EXPECT_EQ(post("/api/message_center/v2/sdk/get", envelope("{}"))->body, "[]");
    EXPECT_EQ(post(stop, R"({"custom_events":[]})")->status, 200);
    EXPECT_THAT(end(), AllOf(HasSubstr("POST /api/v3/session/stop  acme  1 event, 90 s, reason default  ("),
                             HasSubstr("  plain, 0 events  ("), HasSubstr("ended after 6 requests\n")));
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
        {start, std::string(1'000'000, '['), usual, 200, "deeper"},
        {start, "{\"a\":\"\xff\"}", usual, 200, "not JSON"},
        {start, "{}", {{"X-Requested-With", "a"}}, 200, "no ts header"},
        {start, "{}", {{"ts", "1"}}, 200, "no X-Requested-With header"},
        {start, "{}", {{"ts", "now"}, {"X-Requested-With", "a"}}, 200, "\"now\" is not a number of seconds"},
        {start, "{\"first_run\":3}", usual, 200, "\"first_run\" is not true or false"},
        {feed, "{}", usual, 200, "no Authorization header"},
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
        const auto requests = received();
        ASSERT_GT(requests.Size(), 0u);
        const auto& last = requests[requests.Size() - 1];
        ASSERT_TRUE(last.HasMember("problem")) << problem;
        EXPECT_THAT(last["problem"].GetString(), HasSubstr(problem));
    }
    EXPECT_EQ(httplib::Client(origin_).Get(start)->status, 404);
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

TEST_F(Backend, GivesEachPersonOneIdentity) {
    const auto idFor = [&](const std::string& json, const std::string& expected = "") {
        const auto response = post(identity, envelope(json));
        if (!expected.empty()) {
            EXPECT_EQ(response->body, scrambled(expected, response->get_header_value("ts")));
        }
        ToolProcess decode({"decode", "--text", "--ts", response->get_header_value("ts")}, response->body);
        return decode.out();
    };
    idFor(R"({"orbinel_id":"own-1","identifiers":{"em":"a"}})", "own-1");
    const auto anna = idFor(R"({"identifiers":{"em":"a","pn":"1"}})");
    EXPECT_THAT(anna, MatchesRegex("[0-9a-f-]{36}\n"));
    EXPECT_EQ(idFor(R"({"identifiers":{"pn":"1","em":"a"}})"), anna);
    EXPECT_NE(idFor(R"({"identifiers":{"em":"a","pn":"2"}})"), anna);
    EXPECT_NE(idFor(R"({"identifiers":{}})"), idFor(R"({"identifiers":{}})"));
    writeAnswer("identity_get.json", R"({"id": "everybody"})");
    idFor(R"({"orbinel_id":"own-1"})", "everybody");
}

TEST_F(Backend, OverridesAnswersOnRequest) {
    EXPECT_EQ(
        override(R"({"path":"/api/v3/session/stop","status":503,"times":2,"headers":{"Retry-After":"9"}})")->status,
        200);
    std::vector<int> statuses;
    for (int i = 0; i < 3; ++i) statuses.push_back(post(stop, envelope("{}"))->status);
    EXPECT_THAT(statuses, ElementsAre(503, 503, 200));

    override(R"({"path":"/own/page","body":"<p>","headers":{"Content-Type":"text/html"}})");
    const auto page = httplib::Client(origin_).Get("/own/page");
    EXPECT_EQ(page->body, "<p>");
    EXPECT_EQ(page->get_header_value("Content-Type"), "text/html");
    override(R"({"path":"/api/v3/session/start","body":{"sdk_disabled":true}})");
    EXPECT_EQ(post(start, "{}")->body, R"({"sdk_disabled":true})");
    override(R"({"path":"/api/identity/v3/get","body":"new-1","scramble":true})");
    const auto scrambledAnswer = post(identity, envelope("{}"));
    EXPECT_EQ(scrambledAnswer->body, scrambled("new-1", scrambledAnswer->get_header_value("ts")));
    override(R"({"path":"/api/v3/session/stop","status":204})");
    EXPECT_EQ(post(stop, envelope("{}"))->body, "");

    EXPECT_EQ(httplib::Client(origin_).Delete("/inspect/answer")->status, 200);
    EXPECT_EQ(httplib::Client(origin_).Get("/own/page")->status, 404);
    for (const std::string refused :
         {"", "[]", "{}", R"({"path":"x"})", R"({"path":"/x","status":"503"})", R"({"path":"/x","status":99})",
          R"({"path":"/x","times":0})", R"({"path":"/x","delay":-1})", R"({"path":"/x","headers":[1]})",
          R"({"path":"/x","headers":{"a":1}})", R"({"path":"/x","statsu":500})"}) {
        EXPECT_EQ(override(refused)->status, 400) << refused;
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

TEST_F(Backend, SharesItsPortWithNobody) {
    const auto page = httplib::Client(origin_).Get("/");
    EXPECT_THAT(page->body, AllOf(HasSubstr("<!DOCTYPE html>"), HasSubstr("</html>"), Not(HasSubstr("https://"))));
    ToolProcess second({"backend", "--port", origin_.substr(origin_.rfind(':') + 1)});
    EXPECT_EQ(second.wait(), 1);
    EXPECT_THAT(second.err(), HasSubstr("cannot be used"));
}

}  // namespace
