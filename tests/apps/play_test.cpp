#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <sstream>

#include "hosts/common/rapidjson_json.hpp"
#include "tests/apps/backend_fixture.hpp"

namespace {

using orbinel::Value;
using orbinel::test::start;
using orbinel::test::stop;
using orbinel::test::ToolProcess;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

Value parsed(const std::string& text) {
    auto outcome = orbinel::hosts::RapidJson().parse(text);
    auto* value = std::get_if<Value>(&outcome);
    EXPECT_NE(value, nullptr) << text;
    return value != nullptr ? std::move(*value) : Value();
}

std::string json(const Value& value) {
    return orbinel::hosts::RapidJson().serialise(value, orbinel::platform::JsonStyle::compactSorted).value_or("?");
}

/// What stands at the place ("request/payload/udid"), keys and indices between slashes; absent where nothing does.
Value at(const Value& value, const std::string& place) {
    std::istringstream parts(place);
    Value found = value;
    for (std::string part; std::getline(parts, part, '/');) {
        Value inner;
        if (const auto* dictionary = found.ifDictionary()) inner = (*dictionary)[part];
        if (const auto* array = found.ifArray(); array != nullptr && std::stoul(part) < array->size()) {
            inner = (*array)[std::stoul(part)];
        }
        found = std::move(inner);
    }
    return found;
}

struct Played {
    int status = -1;
    std::string out;
    std::string err;

    [[nodiscard]] std::vector<Value> entries() const {
        std::vector<Value> found;
        std::istringstream lines(out);
        for (std::string line; std::getline(lines, line);) found.push_back(parsed(line));
        return found;
    }

    /// What stands at the place in every entry that has it.
    [[nodiscard]] std::vector<std::string> all(const std::string& place) const {
        std::vector<std::string> found;
        for (const auto& entry : entries()) {
            if (const auto value = at(entry, place); !value.isAbsent()) found.push_back(json(value));
        }
        return found;
    }

    /// The request's payloads, of those that went to the path.
    [[nodiscard]] std::vector<Value> payloads(const std::string& path) const {
        std::vector<Value> found;
        for (const auto& entry : entries()) {
            if (at(entry, "request/url").stringOrEmpty().ends_with(path)) found.push_back(at(entry, "request/payload"));
        }
        return found;
    }
};

Played play(const std::string& scenario, std::vector<std::string> options = {}) {
    options.insert(options.begin(), "play");
    options.emplace_back("-");
    ToolProcess tool(options, scenario);
    const int status = tool.wait();
    return {status, tool.out(), tool.err()};
}

/// On a device that the backend knows: otherwise the first activation asks for consent and identity first.
const std::string knownDevice = R"("preset": {"defaults": {"OrbinelGDPRConsent": true, "ORBINEL_ID": "known"}})";

std::string withSteps(const std::string& steps) {
    return R"({"name": "test", "clock": {"start": 1767225600}, )" + knownDevice + R"(, "steps": [)" + steps + "]}";
}

// Steps that many scenarios share, with commas between those that belong together.
const std::string initialise =
    R"({"call": "initWithLaunchOptions:partnerName:appGroup:customEndpoint:",
        "args": [null, "acme", "group.acme", "${endpoint}"]})";
const std::string activate = R"({"notify": "UIApplicationDidBecomeActiveNotification"})";
const std::string beginSession = initialise + "," + activate + R"(,{"settle": 20})";
const std::string leave = R"({"notify": "UIApplicationDidEnterBackgroundNotification"})";
const std::string endSession = leave + R"(,{"settle": 20})";

std::string event(const std::string& name) {
    return R"({"call": "tagEvent:", "args": [")" + name + R"("], "then": [{"call": "build"}]})";
}

/// Has the target "t" called back under the name.
std::string listen(const std::string& callback) {
    return R"({"call": "new:Target", "as": "t"}, {"call": "registerOrbinelCallbackWithSelector:sender:",
        "args": [{"$callback": ")" +
           callback + R"("}, {"$ref": "t"}]})";
}

std::string joined(const std::vector<std::string>& steps) {
    std::string text;
    for (const auto& step : steps) text += (text.empty() ? "" : ",") + step;
    return text;
}

class Play : public orbinel::test::Backend {
protected:
    Play() : Backend(std::vector<std::string>{}) {}

    [[nodiscard]] Played playHere(const std::vector<std::string>& steps, std::vector<std::string> options = {}) const {
        options.insert(options.begin(), {"--endpoint", origin_});
        return play(withSteps(joined(steps)), std::move(options));
    }

    /// What the backend received: the first event that the application tagged in a stop, "start" for a start.
    [[nodiscard]] std::vector<std::string> receivedSessions() const {
        std::vector<std::string> found;
        const auto requests = parsed(httplib::Client(origin_).Get("/inspect/requests")->body);
        for (const auto& request : *requests.ifArray()) {
            if (at(request, "path") == Value(start)) found.emplace_back("start");
            if (at(request, "path") == Value(stop)) found.push_back(applicationEventOf(at(request, "payload")));
        }
        return found;
    }

    [[nodiscard]] static std::string applicationEventOf(const Value& payload) {
        for (int i = 0;; ++i) {
            const auto name = at(payload, "custom_events/" + std::to_string(i) + "/event_name");
            if (name.isAbsent()) return "";
            if (name != Value("session_start")) return name.stringOrEmpty();
        }
    }
};

TEST_F(Play, TracesOnePurchaseFromItsTagToTheAnsweredStop) {
    const auto played =
        playHere({beginSession, R"({"call": "tagEvent:", "args": ["purchase"], "then": [
        {"call": "addParameterWithDouble", "args": ["price", 9.5]}, {"call": "build", "args": []}]})",
                  R"({"advance": 90})", endSession, R"({"expect": {"in": "request", "count": 1, "where": {
        "/url": {"contains": "session/stop"}, "/payload/session_duration": 90}}})"});
    EXPECT_EQ(played.status, 0) << played.err;
    EXPECT_THAT(played.out, StartsWith("{\"at\":1767225600,\"step\":0,\"result\":null}\n"));
    EXPECT_THAT(played.out, HasSubstr("{\"at\":1767225690,\"expectation\":\"held\",\"found\":1}\n"));
    EXPECT_THAT(played.all("step"), ElementsAre("0", "3"));
    EXPECT_THAT(played.all("request/id"), ElementsAre("1", "2"));
    EXPECT_THAT(played.all("response/status"), ElementsAre("200", "200"));
    EXPECT_THAT(played.all("request/headers/ts"), ElementsAre("\"1767225600\"", "\"1767225690\""));
    EXPECT_LT(played.out.find(R"("request":{"id":2)"), played.out.find(R"("response":{"id":2)"));

    const auto stops = played.payloads(stop);
    ASSERT_EQ(stops.size(), 1u);
    EXPECT_EQ(at(stops[0], "partner_name"), Value("acme"));
    EXPECT_EQ(json(at(stops[0], "custom_events/1/event_params")), R"({"price":9.5})");
    // The body itself is still the envelope that travelled.
    const auto body = parsed(parsed(played.all("request/body")[1]).stringOrEmpty());
    const auto plain = orbinel::hosts::RapidJson().serialise(stops[0], orbinel::platform::JsonStyle::compact);
    EXPECT_EQ(at(body, "payload"), Value(orbinel::tool::scramble(*plain, "1767225690")));
}

TEST_F(Play, ExamplesHold) {
    int examples = 0;
    for (const auto& entry : std::filesystem::directory_iterator(ORBINEL_EXAMPLES)) {
        if (entry.path().extension() != ".json") continue;
        ToolProcess tool({"play", "--endpoint", origin_, entry.path().string()});
        EXPECT_EQ(tool.wait(), 0) << entry.path() << '\n' << tool.err() << tool.out();
        EXPECT_EQ(tool.err(), "");
        ++examples;
    }
    EXPECT_GE(examples, 2);
}

// What is delivered reaches the library though the application has no handler; a wrapper's own delegate is left alone.
TEST_F(Play, DeliversToTheDelegatesThatTheHostHas) {
    const std::string response = "userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:";
    const std::string push =
        R"({"push": {"aps": {}, "source": "Orbinel", "camp_id": 1, "camp_type": 1, "variant_id": 1}, "via": "response"})";
    const auto logsWith = [&](const std::string& host) {
        auto scenario = withSteps(joined({initialise, push, R"({"inspect": "session_record"})"}));
        scenario.insert(1, host);
        auto played = play(scenario, {"--endpoint", origin_});
        EXPECT_EQ(played.status, 0) << played.err;
        const auto handlers = played.all("host_called");
        return played.all("value/push_logs/0/camp_id").size() * 10 + handlers.size();
    };
    EXPECT_EQ(logsWith(""), 10u);
    EXPECT_EQ(logsWith(R"("host": {"application": [")" + response + R"("], "notifications": "application"},)"), 11u);
    EXPECT_EQ(logsWith(R"("host": {"notifications": []},)"), 10u);
    EXPECT_EQ(logsWith(R"("host": {"notifications": [")" + response + R"("], "hybrid": true},)"), 1u);
}

TEST_F(Play, LinksOfTheApplicationsOwnSchemesAreThoseThatItsPackageNames) {
    const auto played = playHere(
        {R"({"device": {"bundle_info": {"CFBundleURLTypes": [{"CFBundleURLSchemes": ["ACME", 7]}, 7]}}})", beginSession,
         R"({"push": {"aps": {}, "source": "Orbinel", "camp_id": 1, "orb_dl_url_scheme": "acme://deep"}, "via": "response"})",
         R"({"advance": 2})", R"({"push": {"aps": {}, "source": "Orbinel", "camp_id": 2, "orb_dl_url_scheme":
             "other://deep"}, "via": "response"})",
         R"({"advance": 2})"});
    EXPECT_THAT(played.all("opened"), ElementsAre("\"acme://deep\""));
}

// Several threads write the trace; a person who compares two of them must not see that.
TEST_F(Play, LeavesTheSameTraceEachTime) {
    override(R"({"path": "/api/v3/session/start", "body": {"session_id": "s"}})");
    const std::vector<std::string> steps{
        R"({"call": "setDevelopmentLog:", "args": [true]})",
        beginSession,
        event("one"),
        R"({"call": "tagEvent:", "args": ["two"], "thread": "background", "then": [{"call": "build"}]})",
        R"({"advance": 5})",
        endSession};
    const auto first = playHere(steps);
    EXPECT_THAT(first.all("console"), Not(IsEmpty()));
    for (int i = 0; i < 5; ++i) EXPECT_EQ(playHere(steps).out, first.out);
}

TEST_F(Play, TellsFailedExpectationsFromStepsThatCannotBeCarriedOut) {
    const auto failed =
        playHere({event("one"), R"({"expect": {"in": "request"}})",
                  R"({"expect": {"in": "step", "where": {"/step": 0, "/result": null}}})", R"({"mark": true})",
                  R"({"expect": {"in": "step", "count": 0}})", R"({"repeat": 3, "steps": [{"call": "getSDKVersion"}]})",
                  R"({"expect": {"in": "step", "where": {"/inner": [0]}, "count": {"max": 2}}})",
                  R"({"expect": {"in": "step", "count": {"min": 3, "max": 3}}})"});
    EXPECT_EQ(failed.status, 1);
    EXPECT_THAT(failed.all("expectation"), ElementsAre("\"failed\"", "\"held\"", "\"held\"", "\"failed\"", "\"held\""));
    EXPECT_EQ(failed.err,
              "orbinel play: stdin: step 1: expected at least 1 of the kind \"request\", found 0.\n"
              "orbinel play: stdin: step 6: expected 0 to 2 of the kind \"step\", found 3.\n");

    override(R"({"path": "/api/v3/session/start", "delay": 20000})");
    const auto hanging = playHere({initialise, activate, R"({"settle": {"seconds": 0.1, "on_limit": "continue"}})",
                                   R"({"settle": {"ignore": ["session/start"]}})", R"({"settle": 0.1})", event("no")});
    EXPECT_EQ(hanging.status, 3);
    EXPECT_EQ(hanging.err,
              "orbinel play: stdin: step 4 could not be carried out: a request is still in flight after the limit.\n");
    EXPECT_THAT(hanging.all("step"), ElementsAre("0"));
    EXPECT_THAT(hanging.all("response/error"), ElementsAre("\"cancelled\""));
    const auto advancing = playHere({initialise, activate, R"({"advance": 30})", event("no")});
    EXPECT_EQ(advancing.status, 3);
    EXPECT_THAT(advancing.err, HasSubstr("step 2 could not be carried out: a request is still in flight"));
    EXPECT_THAT(advancing.all("step"), ElementsAre("0"));

    const auto waiting = playHere({R"({"wait_for": {"in": "response"}, "seconds": 0.1})"});
    EXPECT_EQ(waiting.status, 3);
    EXPECT_THAT(waiting.err, HasSubstr("step 0 could not be carried out"));
}

TEST_F(Play, CountsTimeOutsOnItsOwnClock) {
    override(R"({"path": "/api/v3/session/start", "delay": 20000})");
    const auto played = playHere({initialise, activate, R"({"advance": 59, "settle": false})",
                                  R"({"expect": {"in": "response", "count": 0}})", R"({"advance": 1, "settle": false})",
                                  R"({"wait_for": {"in": "response", "where": {"/error": {"contains": "Timeout"}}}})"});
    EXPECT_EQ(played.status, 0) << played.err << played.out;
}

TEST_F(Play, KeepsAStopInFlightOverEveryKindOfRelaunch) {
    for (const std::string how : {"end", "kill"}) {
        remove("requests");
        override(R"({"path": "/api/v3/session/stop", "delay": 20000, "times": 1})");
        const auto kept = R"({"call": "tagEvent:", "args": ["before"], "as": "kept", "then": [{"call": "build"}]})";
        const auto stopLeft = R"({"wait_for": {"in": "request", "where": {"/url": {"contains": "stop"}}}})";
        const auto relaunch = R"({"relaunch": ")" + how + R"("})";
        const auto played =
            playHere({listen("old"), beginSession, kept, R"({"advance": 10})", leave, stopLeft, relaunch,
                      R"({"mark": true})", beginSession, R"({"call": "build", "on": "kept"})", event("after"),
                      R"({"advance": 20})", endSession, R"({"expect": {"in": "callback", "count": 0}})"});
        EXPECT_EQ(played.status, 0) << how << played.err << played.out;
        EXPECT_THAT(played.all("response/error"), ElementsAre("\"cancelled\"")) << how;
        EXPECT_THAT(receivedSessions(), ElementsAre("start", "before", "before", "start", "after")) << how;
        const auto stops = played.payloads(stop);
        ASSERT_EQ(stops.size(), 3u) << how;
        EXPECT_EQ(at(stops[2], "custom_events/2"), Value()) << "an event of the earlier launch came to life";
    }
}

TEST_F(Play, DeliversWhatWasQueuedOfflineInLaterPlays) {
    const std::vector<std::string> options{"--data-dir", (directory_.path() / "data").string()};
    for (const std::string name : {"one", "two", "three"}) {
        auto offline = options;
        offline.insert(offline.begin(), {"--endpoint", "http://127.0.0.1:1"});
        const auto played = play(withSteps(joined({beginSession, event(name), endSession})), offline);
        EXPECT_EQ(played.status, 0);
        EXPECT_THAT(played.err, HasSubstr("no request got an answer from http://127.0.0.1:1: is the backend running?"));
    }
    const auto played = playHere({R"({"inspect": "defaults"})", beginSession}, options);
    EXPECT_EQ(at(parsed(played.all("value")[0]), "orbinelQueue").ifArray()->size(), 3u);
    std::vector<std::string> sent;
    for (const auto& payload : played.payloads(stop)) sent.push_back(applicationEventOf(payload));
    EXPECT_THAT(sent, ElementsAre("one", "two", "three"));
    ASSERT_EQ(receivedSessions().size(), 4u);
    EXPECT_EQ(receivedSessions().back(), "start");
}

TEST_F(Play, DeviceAndPresetReachTheLibrary) {
    const auto played =
        play(R"({"name": "device", "clock": {"start": 1767225600},
        "device": {"battery": 41, "connection": "cellular", "app_version": "7.1", "os_version": "17.2",
                   "push_permission": "granted", "location_enabled": true, "language": "tr-TR", "idfa": null,
                   "model": "Phone9,1", "screen": {"width": 320, "height": 640, "scale": 2}},
        "preset": {"defaults": {"ORBINEL_UDID_CACHE": "PRESETUDID", "gone": 1, "big": {"$int64": 5}},
                   "app_group": {"name": "group.acme", "values": {"of_the_group": [1.5]}},
                   "secure": {"ORBINEL_UDID_KEYCHAIN": {"k": [1]}},
                   "content_cache": {"title": {"content_id": 7, "variant_id": 3, "new_value": "Hello"}}},
        "steps": [)" +
                 joined({beginSession, R"({"device": {"battery": null, "timezone": "Asia/Tokyo"}})",
                         R"({"call": "tagEvent:", "args": ["at"], "as": "at", "then": [
                                  {"call": "addParameterWithDate", "args": ["moment", {"$date": 0.25}]}]})",
                         R"({"call": "getParameters", "on": "at"})",
                         R"({"call": "getContentStringWithName:defaultString:dataType:", "args": ["title", "Hi", 0]})",
                         endSession, R"({"inspect": "app_group"})", R"({"inspect": "secure"})",
                         R"({"inspect": "gate"})", R"({"inspect": "content_cache"})"}) +
                 "]}",
             {"--endpoint", origin_});
    ASSERT_EQ(played.status, 0) << played.err;
    const auto sessionStart = played.payloads(start).at(0);
    EXPECT_EQ(at(sessionStart, "udid"), Value("PRESETUDID"));
    for (const auto& [key, value] : orbinel::Dictionary{{"battery", 41},
                                                        {"connection", "celular"},
                                                        {"app_version", "7.1"},
                                                        {"os_version", "17.2"},
                                                        {"push_enabled", true},
                                                        {"location_enabled", true}}) {
        EXPECT_EQ(at(sessionStart, "device_info/" + key), value) << key;
    }
    const auto stopped = json(played.payloads(stop).at(0));
    for (const auto* fact : {"\"tr\"", "Phone9,1", "Asia/Tokyo", "320"}) EXPECT_THAT(stopped, HasSubstr(fact));
    EXPECT_THAT(played.all("result"), Contains(R"({"moment":"1970-01-01T09:00:00.250Z"})"));
    const auto states = played.all("value");
    EXPECT_EQ(json(at(parsed(states.at(0)), "of_the_group")), "[1.5]");
    EXPECT_EQ(json(at(parsed(states.at(1)), "ORBINEL_UDID_KEYCHAIN")), R"({"k":[1]})");
    EXPECT_EQ(at(parsed(states.at(2)), "open"), Value(true));
    EXPECT_THAT(played.all("result"), Contains("\"Hello\""));
    EXPECT_EQ(json(at(parsed(states.at(3)), "title")), R"({"content_id":7,"new_value":"Hello","variant_id":3})");
}

TEST_F(Play, ArgumentsArriveAsWhatTheyAre) {
    const auto played = playHere(
        {R"({"call": "tagEvent:", "args": ["kinds"], "as": "e", "then": [
             {"call": "addParameters", "args": [{"small": 3, "wide": {"$int64": 3}, "real": {"$double": 2},
                "huge": 5000000000, "bytes": {"$bytes": "41ff"}, "nothing": null,
                "long": {"$repeat": ["ab", 3]}, "list": ["x", 1]}]},
             {"call": "addParameterWithString", "args": ["absent", null]}]})",
         R"({"call": "getParameters", "on": "e"})", R"({"call": "getName", "on": "e", "as": "name"})",
         R"({"call": "partnerNameIsValid:", "args": [{"$ref": "name"}]})",
         R"({"call": "partnerNameIsValid:", "args": [{"$double": "nan"}]})",
         R"({"call": "partnerNameIsValid:", "args": [null]})", R"({"call": "getSDKVersion", "thread": "background"})"});
    ASSERT_EQ(played.status, 0) << played.err;
    const auto results = played.all("result");
    EXPECT_THAT(results, ElementsAre("null", HasSubstr("\"long\":\"ababab\""), "\"kinds\"", "true", "false", "false",
                                     StartsWith("\"13.")));
    const auto parameters = parsed(results.at(1));
    EXPECT_EQ(at(parameters, "huge"), Value(5e9));
    EXPECT_EQ(json(at(parameters, "list")), R"(["x"])");
    for (const auto* left : {"nothing", "absent"}) EXPECT_TRUE(at(parameters, left).isAbsent()) << left;
    EXPECT_EQ(at(parameters, "bytes"), Value("A\xEF\xBF\xBD"));
}

TEST_F(Play, CallbacksAreTracedWithWhatTheyAreHandedUntilTheirTargetIsReleased) {
    const auto call = [](const std::string& operation, const std::string& name) {
        return R"({"call": ")" + operation + R"(", "args": [{"$callback": ")" + name + "\"}]}";
    };
    const auto called = [](const std::string& name) {
        return R"({"wait_for": {"in": "callback", "where": {"/callback": ")" + name + R"("}}, "seconds": 20})";
    };
    const auto played = playHere({listen("started"), beginSession, endSession, R"({"release": "t"})", activate,
                                  endSession, call("removeInappWithCompletionHandler:", "removed"), called("removed"),
                                  call("eraseStoredDataWithCompletionHandler:", "erased"), called("erased")});
    EXPECT_EQ(played.status, 0) << played.err;
    EXPECT_THAT(played.all("callback"), ElementsAre("\"started\"", "\"removed\"", "\"erased\""));
    EXPECT_THAT(played.all("args"), ElementsAre(R"([{"type":6}])", "[]", "[null]"));
}

TEST_F(Play, RunsInRealTimeWithoutAClock) {
    const std::vector<std::string> options{"--endpoint", origin_};
    auto pretty = options;
    pretty.emplace_back("--pretty");
    const auto scenario = R"({"name": "real", )" + knownDevice + R"(, "steps": [)" +
                          joined({beginSession, event("now"), endSession}) + "]}";
    const auto before = std::chrono::system_clock::now();
    const auto played = play(scenario, options);
    EXPECT_EQ(played.status, 0) << played.err;
    for (const auto& time : played.all("at")) {
        const auto moment = std::chrono::duration<double>(parsed(time).number().value_or(0));
        EXPECT_GE(moment, before.time_since_epoch()) << time;
        EXPECT_LE(moment, std::chrono::system_clock::now().time_since_epoch()) << time;
    }
    EXPECT_EQ(receivedSessions(), std::vector<std::string>({"start", "now"}));
    EXPECT_THAT(play(scenario, pretty).out, HasSubstr("POST " + origin_ + start));
}

// A pattern that matches too much lets a broken application pass; one that matches too little cries wolf.
TEST_F(Play, PatternsMeanWhatTheySay) {
    const std::string entry = R"({"call": "tagEvent:", "args": ["e"], "as": "e", "then": [
        {"call": "addParameters", "args": [{"n": 90, "t": "a text", "l": ["x", "y"], "yes": true}]}]},
        {"call": "getParameters", "on": "e", "as": "p"})";
    const std::vector<std::pair<std::string, int>> patterns{
        {R"({"/result/n": 90})", 1},
        {R"({"/result/n": 90.0})", 1},
        {R"({"/result/n": {"$int64": 90}})", 1},
        {R"({"/result/n": "90"})", 0},
        {R"({"/result/n": {"contains": "90"}})", 0},
        {R"({"/result/yes": 1})", 0},
        {R"({"/result/t": {"contains": "te"}, "/result/l/1": "y"})", 1},
        {R"({"/result/t": {"contains": "te"}, "/result/l/1": "x"})", 0},
        {R"({"/result/l": ["x", "y"]})", 1},
        {R"({"/result/l": ["y", "x"]})", 0},
        {R"({"/result/l/01": "y"})", 0},
        {R"({"/result/l/2": {"absent": true}})", 3},
        {R"({"/result/t/deeper": {"absent": true}, "/step": 1})", 1},
        {R"({"/result": null})", 2},
        {R"({"/result": {"yes": true, "l": ["x", "y"], "t": "a text", "n": 90}})", 1},
        {R"({"/result": {"t": "a text"}})", 0},
        {R"({"": {"absent": true}})", 0},
        {R"({})", 3},
    };
    std::vector<std::string> steps{entry, R"({"call": "addParameters", "on": "e", "args": [{"$ref": "p"}]})"};
    for (const auto& [where, count] : patterns) {
        steps.push_back(R"({"expect": {"in": "step", "where": )" + where + R"(, "count": )" + std::to_string(count) +
                        "}}");
    }
    const auto played = playHere(steps);
    EXPECT_EQ(played.status, 0) << played.err;
    EXPECT_EQ(played.all("expectation").size(), patterns.size());
}

// Answers are the backend's business: whatever they are, the trace stays readable.
TEST_F(Play, SurvivesAnswersOfEveryKind) {
    const std::string deep = std::string(511, '[') + std::string(511, ']');
    const std::vector<std::string> bodies{
        R"("no JSON")", "[1]", deep, R"({"session_id": 7, "new_id": {}, "inapps": [[]]})", R"("\u0000\ud83d\ude00")"};
    for (const auto& body : bodies) {
        override(R"({"path": "/api/v3/session/start", "body": )" + body + "}");
        const auto played = playHere({beginSession, event("after"), endSession});
        EXPECT_EQ(played.status, 0) << body << played.err;
        EXPECT_EQ(played.all("response/status").size(), 2u) << body;
        EXPECT_EQ(applicationEventOf(played.payloads(stop).at(0)), "after") << body;
    }
}

TEST_F(Play, LeavesNothingBehindWithoutADataDirectory) {
    setenv("TMPDIR", directory_.path().c_str(), 1);  // of the processes that follow
    EXPECT_EQ(playHere({beginSession}).status, 0);
    EXPECT_EQ(playHere({R"({"wait_for": {"in": "response"}, "seconds": 0})"}).status, 3);
    unsetenv("TMPDIR");
    EXPECT_TRUE(std::filesystem::is_empty(directory_.path()));
}

// Nothing runs, and one line says what is wrong and where.
TEST(PlayScenario, IsRefusedAsAWholeWithOneLine) {
    const auto played = play(withSteps(event("fine") + R"(,{"dance": 1})"));
    EXPECT_EQ(played.status, 2);
    EXPECT_EQ(played.out, "");
    EXPECT_EQ(played.err, "orbinel play: stdin: step 1: there is no step \"dance\".\n");
    for (const std::vector<std::string>& words : {std::vector<std::string>{"play"},
                                                  {"play", "/nowhere/at/all.json"},
                                                  {"play", "/"},
                                                  {"play", "--ui", "paper", "-"},
                                                  {"play", "--endpoint", "localhost", "-"},
                                                  {"play", "--endpoint", "http://localhost/", "-"},
                                                  {"play", "--data-dir", "/dev/null/x", "-"}}) {
        ToolProcess tool(words, R"({"name": "n", "steps": []})");
        EXPECT_EQ(tool.wait(), 2) << words.back();
        EXPECT_THAT(tool.err(), StartsWith("orbinel play: "));
    }
}

}  // namespace
