#include <algorithm>
#include <atomic>
#include <future>
#include <thread>

#include "tests/apps/backend_fixture.hpp"

namespace orbinel::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

using InspectorServer = Backend;

// A page of another site that is open in the same browser must read nothing here, also under a name of its own that
// leads to this machine, and change nothing.
TEST_F(InspectorServer, ListensToThisMachineAndItsOwnPageAlone) {
    const auto port = origin_.substr(origin_.rfind(':'));
    const auto reached = [&](const std::string& host) {
        const auto status = get("/inspect/requests", {{"Host", host}})->status;
        const auto api = httplib::Client(origin_).Post(start, {{"Host", host}}, "{}", "application/json")->status;
        return status == 200 && api == 200;
    };
    for (const auto* name : {"127.0.0.1", "localhost", "LOCALHOST", "[::1]"}) EXPECT_TRUE(reached(name + port)) << name;
    const auto before = received().Size();
    for (const auto& host : {std::string("attacker.example") + port, std::string("localhost"), "127.0.0.1:1" + port,
                             "localhost.attacker.example" + port, "localhost" + port + ".example", std::string()}) {
        EXPECT_FALSE(reached(host)) << host;
    }
    EXPECT_EQ(received().Size(), before);

    const auto forget = [&](const httplib::Headers& headers) {
        return httplib::Client(origin_).Delete("/inspect/requests", headers)->status;
    };
    for (const auto* origin : {"http://attacker.example", "null", "https://127.0.0.1", "http://127.0.0.1:1"}) {
        EXPECT_EQ(forget({{"Origin", origin}}), 403) << origin;
        EXPECT_EQ(post(start, "{}", {{"Origin", origin}})->status, 403) << origin;
    }
    EXPECT_EQ(forget({{"Origin", "http://localhost" + port}}), 403) << "of this machine, but not the page's own";
    EXPECT_EQ(get("/inspect/requests", {{"Sec-Fetch-Site", "cross-site"}})->status, 403);
    EXPECT_EQ(get("/inspect/stream", {{"Sec-Fetch-Site", "same-site"}})->status, 403);
    EXPECT_EQ(received().Size(), before);
    EXPECT_EQ(forget({{"Origin", origin_}, {"Sec-Fetch-Site", "same-origin"}}), 200);
}

TEST_F(InspectorServer, TakesNoBodyBeyondItsBoundAndNoRequestFromARefusedBody) {
    const std::string large(17'000'000, ' ');
    const auto inChunks = [&](std::size_t, httplib::DataSink& sink) {
        sink.write(large.data(), large.size());
        sink.done();
        return true;
    };
    EXPECT_EQ(httplib::Client(origin_).Post("/x", inChunks, "text/plain")->status, 413);
    httplib::Client packing(origin_);
    packing.set_compress(true);
    EXPECT_EQ(packing.Post("/x", large, "text/plain")->status, 413);

    const auto form = httplib::Client(origin_).Post("/x", {{"Origin", "http://attacker.example"}}, "no form",
                                                    "multipart/form-data; boundary=b");
    EXPECT_EQ(form->status, 403);
    EXPECT_EQ(form->get_header_value("Connection"), "close") << "what follows would pass for another request";
    EXPECT_EQ(received().Size(), 0u);
}

TEST_F(InspectorServer, ServesAPageThatCanRunNothingButItsOwnFiles) {
    const auto page = get("/");
    EXPECT_THAT(page->body, AllOf(HasSubstr("<!DOCTYPE html>"), HasSubstr("</html>"), Not(HasSubstr("<script>")),
                                  Not(HasSubstr("https://")), Not(HasSubstr("style="))));
    EXPECT_THAT(page->get_header_value("Content-Security-Policy"),
                AllOf(HasSubstr("default-src 'none'"), HasSubstr("script-src 'self';"),
                      HasSubstr("trusted-types 'none'"), Not(HasSubstr("unsafe"))));
    for (const auto& [path, type] : {std::pair{"/inspector/main.js", "text/javascript; charset=utf-8"},
                                     {"/inspector/style.css", "text/css; charset=utf-8"},
                                     {"/inspector/icon.svg", "image/svg+xml"},
                                     {"/inspect/requests", "application/json"}}) {
        const auto file = get(path);
        EXPECT_EQ(file->get_header_value("Content-Type"), type);
        EXPECT_EQ(file->get_header_value("X-Content-Type-Options"), "nosniff");
    }
    EXPECT_EQ(get("/inspector/../server.cpp")->status, 404);
    EXPECT_EQ(httplib::Client(origin_).Delete("/")->status, 404);
}

/// The first events of a stream, until one that holds `last`.
std::vector<std::string> streamed(
    const std::string& origin, const std::string& last, const httplib::Headers& headers,
    const std::function<void()>& begun = [] {}, const std::string& query = "") {
    std::string text;
    httplib::Client(origin).Get("/inspect/stream" + query, headers, [&](const char* bytes, std::size_t size) {
        if (text.empty()) begun();
        text.append(bytes, size);
        return text.find(last) == std::string::npos || !text.ends_with("\n\n");
    });
    std::vector<std::string> events;
    for (auto end = text.find("\n\n"); end != std::string::npos; end = text.find("\n\n")) {
        events.push_back(text.substr(0, end));
        text.erase(0, end + 2);
    }
    return events;
}

TEST_F(InspectorServer, StreamsWhatWasWhatComesAndThatItWasForgotten) {
    writeAnswer("session_start.json", R"({"session_id": "s-1"})");
    for (int i = 0; i < 450; ++i) post("/x", "{}");
    post(start, R"({"udid":"first"})");
    const auto news = [&] { post(stop, envelope(R"({"udid":"second"})")); };
    const auto events = streamed(origin_, "second", {}, news);
    ASSERT_GE(events.size(), 3u) << "in portions";
    const auto dataOf = [](const std::string& event) { return parsed(event.substr(event.find("data: ") + 6)); };
    std::uint64_t id = 0;
    for (const auto& event : events) {
        const auto data = dataOf(event);
        for (const auto& request : data["requests"].GetArray()) {
            EXPECT_EQ(request["id"].GetUint64(), ++id);
            EXPECT_FALSE(request.HasMember("body"));
        }
    }
    EXPECT_EQ(id, 452u);
    EXPECT_EQ(received("?since=450&limit=1")[0]["answer"], R"({"session_id": "s-1"})");
    EXPECT_EQ(received("?since=450&limit=1").Size(), 1u);

    const auto place = events.back().substr(4, events.back().find('\n') - 4);
    post("/x", R"({"n":"third"})");
    const auto resumed = streamed(origin_, "\"/x\"", {{"Last-Event-ID", place}});
    ASSERT_EQ(resumed.size(), 1u);
    EXPECT_EQ(streamed(
                  origin_, "\"/x\"", {}, [] {}, "?since=" + place),
              resumed)
        << "by the address";
    EXPECT_EQ(dataOf(resumed[0])["requests"].Size(), 1u);
    remove("requests");
    const auto cleared = streamed(origin_, "data", {{"Last-Event-ID", place}});
    EXPECT_EQ(dataOf(cleared[0])["requests"].Size(), 0u);
    EXPECT_NE(dataOf(cleared[0])["run"], dataOf(resumed[0])["run"]);
}

TEST_F(InspectorServer, EndsWhileStreamsAreOpen) {
    constexpr int most = 8;
    std::vector<std::future<void>> open;
    std::atomic<int> begun = 0;
    for (int i = 0; i < most; ++i) {
        open.push_back(std::async(std::launch::async, [&] { streamed(origin_, "never", {}, [&] { ++begun; }); }));
    }
    while (begun < most) std::this_thread::yield();
    EXPECT_EQ(get("/inspect/stream")->status, 503);
    EXPECT_EQ(post(start, "{}")->status, 200);
    EXPECT_THAT(end(), HasSubstr("ended after 1 request"));
}

TEST_F(InspectorServer, AnswersAsItIsEditedUntilThatIsTakenBack) {
    writeAnswer("session_start.json", R"({"by": "file"})");
    const auto edit = [&](const std::string& json) { return put("answer-files", json); };
    const auto answered = [&](const std::string& partner) {
        return std::string(parsed(post(start, "{}", {{"X-Requested-With", partner}})->body)["by"].GetString());
    };
    EXPECT_EQ(edit(R"({"file":"session_start.json","text":"{\"by\": \"${origin}\"}"})"), 200);
    EXPECT_EQ(edit(R"({"file":"session_start.json","partner":"acme","text":"{\"by\": \"acme\"}"})"), 200);
    EXPECT_EQ(answered("acme"), "acme");
    EXPECT_EQ(answered("another"), origin_);
    std::filesystem::create_directory(answers_ / "own");
    writeAnswer("own/session_start.json", R"({"by": "own file"})");
    EXPECT_EQ(answered("own"), "own file");

    const auto files = parsed(get("/inspect/answer-files?partner=acme")->body);
    EXPECT_STREQ(files[0]["path"].GetString(), start);
    EXPECT_STREQ(files[0]["from"].GetString(), "edited");
    EXPECT_STREQ(files[0]["text"].GetString(), R"({"by": "acme"})");
    EXPECT_STREQ(files[1]["from"].GetString(), "built in");
    for (const std::string refused :
         {"", "[]", "{}", R"({"file":"../x","text":"{}"})", R"({"file":"session_start.json","text":"{"})",
          R"({"file":"session_start.json","text":{}})", R"({"file":"session_start.json","partner":"../x","text":"{}"})",
          R"({"file":"session_start.json","partner":5,"text":"{}"})"}) {
        EXPECT_EQ(edit(refused), 400) << refused;
    }
    EXPECT_EQ(remove("answer-files?file=session_start.json&partner=acme"), 200);
    EXPECT_EQ(answered("acme"), origin_);
    EXPECT_EQ(remove("answer-files?file=session_start.json"), 200);
    EXPECT_EQ(answered("acme"), "file");
    EXPECT_EQ(remove("answer-files?file=none"), 400);

    EXPECT_EQ(put("consents", R"({"udid":"u","gdpr_consent":false})"), 200);
    EXPECT_EQ(compact(remembered("consents")), R"([{"udid":"u","gdpr_consent":false}])");
    for (const auto* refused : {R"({"gdpr_consent":false})", "7"}) EXPECT_EQ(put("consents", refused), 400);
}

// Two pages, or a page and an editor: whoever saves last must not take away what the other one saved.
TEST_F(InspectorServer, RefusesAnEditThatIsBasedOnAnEarlierText) {
    writeAnswer("session_start.json", R"({"by": "file"})");
    const auto version = [&] {
        return std::string(parsed(get("/inspect/answer-files")->body)[0]["version"].GetString());
    };
    const auto edit = [&](const std::string& by, const std::string& basedOn) {
        return put("answer-files", R"({"file":"session_start.json","text":"{\"by\": \")" + by + R"(\"}","version":")" +
                                       basedOn + "\"}");
    };
    const auto takeBack = [&](const std::string& basedOn) {
        return remove("answer-files?file=session_start.json&version=" + basedOn);
    };
    const auto first = version();
    writeAnswer("session_start.json", R"({"by": "an editor"})");
    EXPECT_EQ(edit("one", first), 409);
    EXPECT_EQ(edit("one", version()), 200);
    const auto ofOne = version();
    EXPECT_EQ(edit("two", ofOne), 200);
    EXPECT_EQ(edit("three", ofOne), 409);
    EXPECT_EQ(takeBack(ofOne), 409);
    EXPECT_STREQ(parsed(post(start, "{}")->body)["by"].GetString(), "two");

    const auto ofTwo = version();
    std::vector<std::future<int>> racing;
    for (int i = 0; i < 8; ++i) {
        racing.push_back(std::async(std::launch::async, [&, i] { return edit("racer " + std::to_string(i), ofTwo); }));
    }
    EXPECT_EQ(std::count_if(racing.begin(), racing.end(), [](auto& one) { return one.get() == 200; }), 1);
    EXPECT_EQ(takeBack(version()), 200);
    EXPECT_STREQ(parsed(post(start, "{}")->body)["by"].GetString(), "an editor");
}

}  // namespace
}  // namespace orbinel::test
