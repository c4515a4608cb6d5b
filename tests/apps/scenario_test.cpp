#include "apps/orbinel/play/scenario_reader.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "apps/orbinel/play/fields.hpp"
#include "apps/orbinel/play/operation.hpp"
#include "support/public_headers.hpp"

// What scenarios may hold.
namespace orbinel::tool {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

std::string withSteps(const std::string& steps) {
    return R"({"name": "test", "clock": {"start": 1767225600}, "steps": [)" + steps + "]}";
}

std::string refusalOf(const std::string& scenario) {
    const auto read = readScenario(scenario, std::nullopt);
    const auto* unusable = std::get_if<Unusable>(&read);
    return unusable != nullptr ? unusable->what() : "";
}

TEST(ScenarioReader, RefusesWhatCannotBePlayedInOneLine) {
    struct Case {
        std::string scenario;
        std::string says;
    };
    const auto step = [](const std::string& text) { return withSteps(R"({"mark": true},)" + text); };
    const auto onEvent = [](const std::string& call) {
        return withSteps(R"({"call": "tagEvent:", "args": ["e"], "then": [)" + call + "]}");
    };
    const std::string deep = std::string(600, '[') + std::string(600, ']');
    const std::vector<Case> cases{
        {"", "not JSON"},
        {"{\"name\"", "not JSON"},
        {deep, "not JSON"},
        {"[]", "the scenario must be an object, not a list"},
        {R"({"steps": []})", "the scenario has no \"name\""},
        {R"({"name": "n"})", "has no \"steps\""},
        {R"({"name": "n", "steps": [], "extra\n": 1})", "cannot have the key \"extra\\n\""},
        {R"({"name": "n", "host": {"application": ["handleOpenURL"]}, "steps": []})",
         "\"application\" of \"host\" has no operation \"handleOpenURL\""},
        {R"({"name": "n", "host": {"notifications": "nobody"}, "steps": []})", "\"notifications\" must be a list"},
        {R"({"name": "n", "clock": {"start": 1e300}, "steps": []})", "\"start\" must be from 0"},
        {R"({"name": "n", "device": {"smell": 1}, "steps": []})", "no fact \"smell\""},
        {R"({"name": "n", "device": {"battery": 101}, "steps": []})", "\"battery\" must be from 0 to 100"},
        {R"({"name": "n", "steps": [{"call": "visitCartPageWithProducts:", "args": [["sku"]]}]})",
         "argument 1 of \"visitCartPageWithProducts:\" must be a list of {\"$ref\"} or null"},
        {R"({"name": "n", "steps": [{"advance": 1}]})", "step 0: \"advance\" needs the scenario's \"clock\""},
        {R"({"name": "n", "steps": [{"call": "setHybridSDKVersion:", "args": ["${endpoint}"]}]})",
         "--endpoint is needed"},
        {R"({"name": "n", "preset": {"secure": {"k": {"$date": 1e18}}}, "steps": []})", "\"k\" of \"secure\": $date"},
        {step("7"), "step 1: a step must be an object"},
        {step("{}"), "step 1: an empty step"},
        {step(R"({"dance": 1})"), "step 1: there is no step \"dance\""},
        {step(R"({"push": {}, "via": "post"})"), "step 1: \"via\" cannot be \"post\", only one of \"response\""},
        {step(R"({"open_url": "a://b"})"), "step 1: the step has no \"via\""},
        {R"({"name": "n", "name": "m", "steps": []})", "an object has the key \"name\" twice, at byte 20"},
        {step(R"({"device_token": "6a"})"), "\"device_token\" must be a {\"$bytes\"}"},
        {step(R"({"notify": "UIKeyboardWillShowNotification", "info": {"height": "x"}})"),
         "\"height\" must be a number"},
        {step(R"({"template": {"finsh": true}})"), "\"template\" cannot have the key \"finsh\""},
        {step(R"({"template": {}})"), "\"template\" needs \"finish\", "},
        {step(R"({"mark": true, "settle": 1})"), "in one step"},
        {step(R"({"notify": "SomethingElse"})"), "there is no notification \"SomethingElse\""},
        {step(R"({"repeat": 2, "steps": [{"mark": true}, {"settle": -1}]})"), "step 1, inner step 1: \"settle\" must"},
        {step(R"({"repeat": 1000, "steps": [{"repeat": 1001, "steps": [{"mark": true}]}]})"), "a million steps"},
        {step(R"({"inspect": "window"})"), "there is nothing to inspect under \"window\""},
        {step(R"({"expect": {"in": "smell"}})"), "no entries of the kind \"smell\""},
        {step(R"({"template": {"finish": false}})"), "step 1: \"finish\" can only be true"},
        {step(R"({"template": {"tap": "next"}})"), "\"tap\" can only be"},
        {step(R"({"template": {"send": {}, "fail": {}}})"), "\"domain\""},
        {step(R"({"shake": [1, 2]})"), "\"shake\" takes three numbers"},
        {step(R"({"page": "1 + 1"})"), "\"page\" needs --ui gtk"},
        {step(R"({"screenshot": "x.png"})"), "\"screenshot\" needs --ui gtk"},
        {step(R"({"expect": {"in": "request", "where": {"url": 1}}})"), "must begin with"},
        {step(R"({"release": "nobody"})"), "kept anything as \"nobody\""},
        {step(R"({"call": "build", "on": "later"})"), "kept anything as \"later\""},
        {step(R"({"call": "explode"})"), "there is no operation \"explode\""},
        {step(R"({"call": "new:OrbinelUser"})"), "there is no operation \"new:OrbinelUser\""},
        {step(R"({"call": "tagEvent:", "args": []})"), "takes 1 argument, not 0"},
        {step(R"({"call": "tagEvent:", "args": [1]})"), "argument 1 of \"tagEvent:\" must be a text or null"},
        {step(R"({"call": "signUpConfirmation", "as": "x"})"), "no result to keep"},
        {onEvent(R"({"call": "addParameterWithInt", "args": ["n", {"$int64": 1}]})"), "a whole number of 32 bits"},
        {onEvent(R"({"call": "addParameterWithInt", "args": ["n", 4294967296]})"), "a whole number of 32 bits"},
        {onEvent(R"({"call": "addParameterWithDate", "args": ["n", 1]})"), "must be a {\"$date\"} or null"},
        {onEvent(R"({"call": "addParameters", "args": [{"x": {"$ref": "y"}}]})"), "argument by itself"},
        {onEvent(R"({"call": "addParameters", "args": [{"x": {"$bytes": "4g"}}]})"), "hexadecimal"},
        {onEvent(R"({"call": "addParameters", "args": [{"x": {"$repeat": ["aaaa", 60000000]}}]})"), "64 MiB"},
        {onEvent(R"({"call": "getName"}, {"call": "build"})"), "no operation \"build\" of a text"},
    };
    for (const auto& [scenario, says] : cases) {
        const auto refusal = refusalOf(scenario);
        EXPECT_THAT(refusal, HasSubstr(says)) << scenario;
        EXPECT_THAT(refusal, Not(HasSubstr("\n"))) << scenario;
    }
}

bool isThere(const std::string& operation, ThingKind receiver) {
    try {
        return !findOperation(operation, receiver).name.empty();
    } catch (const Unusable&) {
        return false;
    }
}

// A scenario can do what an application can.
TEST(ScenarioOperations, AreAllThatTheHeadersDeclare) {
    const std::map<std::string, ThingKind> receivers{{"Orbinel", ThingKind::nothing},
                                                     {"OrbinelEvent", ThingKind::event},
                                                     {"OrbinelUser", ThingKind::user},
                                                     {"OrbinelIdentifiers", ThingKind::identifiers},
                                                     {"OrbinelProduct", ThingKind::product}};
    std::size_t found = 0;
    for (const auto& operation : testing::publicOperations()) {
        const auto receiver = receivers.find(operation.owner);
        const bool isForTheLibrary = operation.owner == "OrbinelProduct" && operation.name == "internal";
        if (receiver == receivers.end() || isForTheLibrary) continue;
        // Those of objects that set something go by the bare name.
        const bool isBare = receiver->second != ThingKind::nothing && isThere(operation.name, receiver->second);
        EXPECT_TRUE(isBare || isThere(operation.fullName(), receiver->second))
            << operation.owner << " " << operation.fullName();
        ++found;
    }
    EXPECT_GT(found, 150U);
}

}  // namespace
}  // namespace orbinel::tool
