#include "apps/orbinel/play/step_reader.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "apps/orbinel/play/argument_kinds.hpp"
#include "orbinel/platform/notification_centre.hpp"

namespace orbinel::tool {

namespace {

constexpr double mostSteps = 1'000'000;           // of one play, repetitions counted out
constexpr double longestLimit = 3600;             // seconds, real time
constexpr double tallestKeyboard = 100'000;       // points
constexpr double longestAdvance = 3'155'760'000;  // seconds: a hundred years

constexpr std::array<std::string_view, 20> stepKinds{
    "call",       "notify", "device", "advance",  "settle",        "wait_for",    "relaunch",
    "inspect",    "repeat", "mark",   "expect",   "release",       "template",    "page",
    "screenshot", "shake",  "push",   "open_url", "user_activity", "device_token"};
constexpr double hardestShake = 1000;  // g

constexpr std::array notifications{
    platform::notification_names::didBecomeActive,  platform::notification_names::didEnterBackground,
    platform::notification_names::willTerminate,    platform::notification_names::orientationDidChange,
    platform::notification_names::keyboardWillShow, platform::notification_names::keyboardWillHide};

/// One whose text names the step already.
struct PlacedUnusable : Unusable {
    using Unusable::Unusable;
};

template <typename List>
bool contains(const List& list, std::string_view name) {
    return std::find(list.begin(), list.end(), name) != list.end();
}

/// The one key of a step that says what it does.
std::string actionOf(const Value& json) {
    std::string action;
    for (const auto& [key, value] : requireDictionary(json, "a step")) {
        if (!contains(stepKinds, key)) continue;
        if (key == "settle" && json.ifDictionary()->contains("advance")) continue;  // a detail of "advance"
        if (!action.empty()) throw Unusable("both " + inQuotes(action) + " and " + inQuotes(key) + " in one step");
        action = key;
    }
    if (!action.empty()) return action;
    const auto& dictionary = *json.ifDictionary();
    throw Unusable(dictionary.empty() ? "an empty step" : "there is no step " + inQuotes(dictionary.begin()->first));
}

std::chrono::milliseconds limitOf(const Value& json, std::string_view what) {
    return std::chrono::milliseconds(static_cast<std::int64_t>(requireNumber(json, what, 0, longestLimit) * 1000));
}

SettleStep readSettle(Fields& step) {
    SettleStep settle;
    const auto& json = step.require("settle");
    if (json.ifDictionary() == nullptr) {
        settle.limit = limitOf(json, "\"settle\"");
        return settle;
    }
    Fields fields(json, "\"settle\"");
    if (const auto* seconds = fields.find("seconds")) settle.limit = limitOf(*seconds, "\"seconds\"");
    if (const auto* parts = fields.find("ignore")) settle.ignoredUrlParts = requireTexts(*parts, "\"ignore\"");
    if (const auto* onLimit = fields.find("on_limit")) {
        const auto& text = requireText(*onLimit, "\"on_limit\"");
        if (text != "fail" && text != "continue") throw Unusable("\"on_limit\" can only be \"fail\" or \"continue\"");
        settle.failOnLimit = text == "fail";
    }
    fields.expectNoOthers();
    return settle;
}

RelaunchStep readRelaunch(Fields& fields) {
    const auto& how = requireText(fields.require("relaunch"), "\"relaunch\"");
    if (how != "end" && how != "kill") throw Unusable("\"relaunch\" can only be \"end\" or \"kill\"");
    return {how == "kill"};
}

InspectStep readInspect(Fields& fields) {
    const auto& name = requireText(fields.require("inspect"), "\"inspect\"");
    return {name, findInspection(name)};
}

ShakeStep readShake(Fields& fields) {
    const auto& axes = requireArray(fields.require("shake"), "\"shake\"");
    if (axes.size() != 3) throw Unusable("\"shake\" takes three numbers");
    const auto axis = [&](std::size_t index) {
        return requireNumber(axes[index], "a number of \"shake\"", -hardestShake, hardestShake);
    };
    return {{axis(0), axis(1), axis(2)}};
}

MarkStep readMark(Fields& fields) {
    if (!requireBoolean(fields.require("mark"), "\"mark\"")) throw Unusable("\"mark\" can only be true");
    return {};
}

}  // namespace

std::string inWords(const std::vector<std::size_t>& place) {
    std::string text;
    for (const auto number : place) text += (text.empty() ? "step " : ", inner step ") + std::to_string(number);
    return text;
}

std::vector<Step> StepReader::read(const Value& json) { return readSteps(requireArray(json, "\"steps\""), {}, 1); }

std::vector<Step> StepReader::readSteps(const Array& list, const Place& outer, double rounds) {
    std::vector<Step> steps;
    steps.reserve(list.size());
    for (const auto& json : list) {
        auto place = outer;
        place.push_back(steps.size());
        steps.push_back(readStep(json, std::move(place), rounds));
    }
    return steps;
}

Step StepReader::readStep(const Value& json, Place place, double rounds) {
    played_ += rounds;
    try {
        if (played_ > mostSteps) throw Unusable("more than a million steps in all");
        auto action = readAction(json, place, rounds);
        return {std::move(place), std::move(action)};
    } catch (const PlacedUnusable&) {
        throw;  // of an inner step
    } catch (const Unusable& error) {
        throw PlacedUnusable(inWords(place) + ": " + error.what());
    }
}

StepReader::Action StepReader::readAction(const Value& json, const Place& place, double rounds) {
    const auto name = actionOf(json);
    Fields fields(json, "the step");
    const auto read = [&]() -> Action {
        if (name == "call") return readCall(fields);
        if (name == "notify") return readNotification(fields);
        if (name == "device") return DeviceStep{readFacts(fields.require("device"))};
        if (name == "push") return DeliverStep{readPush(fields, arguments_)};
        if (name == "open_url") return DeliverStep{readOpenUrl(fields)};
        if (name == "user_activity") return DeliverStep{readUserActivity(fields)};
        if (name == "device_token") return DeliverStep{readDeviceToken(fields, arguments_)};
        if (name == "advance") return readAdvance(fields);
        if (name == "settle") return readSettle(fields);
        if (name == "wait_for") return readWaitFor(fields);
        if (name == "relaunch") return readRelaunch(fields);
        if (name == "inspect") return readInspect(fields);
        if (name == "repeat") return readRepeat(fields, place, rounds);
        if (name == "template") return TemplateStep{readPageAction(fields.require("template"))};
        if (name == "page") return PageStep{readWindowText(fields, name)};
        if (name == "screenshot") return ScreenshotStep{readWindowText(fields, name)};
        if (name == "shake") return readShake(fields);
        if (name == "mark") return readMark(fields);
        if (name == "expect") return readExpectation(fields.require("expect"), arguments_);
        return readRelease(fields);
    };
    auto action = read();
    fields.expectNoOthers();
    return action;
}

CallStep StepReader::readCall(Fields& fields) {
    CallStep call;
    auto receiver = ThingKind::nothing;
    if (const auto* on = fields.find("on")) {
        call.receiver = requireText(*on, "\"on\"");
        receiver = kindOf(*call.receiver);
        if (receiver == ThingKind::nothing) throw Unusable(inQuotes(*call.receiver) + " is no object");
    }
    call.chain.push_back(readInvocation(fields, receiver));
    auto result = call.chain.back().operation->result;
    auto object = result != ThingKind::nothing ? result : receiver;
    if (const auto* then = fields.find("then")) {
        for (const auto& json : requireArray(*then, "\"then\"")) {
            Fields next(json, "an element of \"then\"");
            if (object == ThingKind::nothing) throw Unusable("\"then\" has nothing to go on with");
            call.chain.push_back(readInvocation(next, object));
            next.expectNoOthers();
            result = call.chain.back().operation->result;
            if (result != ThingKind::nothing) object = result;
        }
    }
    if (const auto* thread = fields.find("thread")) {
        if (requireText(*thread, "\"thread\"") != "background") throw Unusable("\"thread\" can only be \"background\"");
        call.inBackground = true;
    }
    if (const auto* as = fields.find("as")) {
        call.keepAs = requireText(*as, "\"as\"");
        if (object == ThingKind::nothing) throw Unusable("there is no result to keep as " + inQuotes(*call.keepAs));
        kept_[*call.keepAs] = object;
    }
    return call;
}

Invocation StepReader::readInvocation(Fields& fields, ThingKind receiver) {
    static const Array noArguments;
    const auto& operation = findOperation(requireText(fields.require("call"), "\"call\""), receiver);
    const auto* json = fields.find("args");
    const auto& arguments = json != nullptr ? requireArray(*json, "\"args\"") : noArguments;
    if (arguments.size() != operation.arguments.size()) {
        const auto count = operation.arguments.size();
        throw Unusable(inQuotes(operation.name) + " takes " + std::to_string(count) +
                       (count == 1 ? " argument" : " arguments") + ", not " + std::to_string(arguments.size()));
    }
    Invocation invocation{&operation, {}};
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const auto what = "argument " + std::to_string(i + 1) + " of " + inQuotes(operation.name);
        invocation.arguments.push_back(readArgument(arguments[i], operation.arguments[i], what));
    }
    return invocation;
}

Argument StepReader::readArgument(const Value& json, ArgumentKind wanted, std::string_view what) {
    if (wanted == ArgumentKind::products) return readProducts(json, what);
    auto argument = arguments_.argument(json);
    const auto* reference = std::get_if<Reference>(&argument);
    checkArgument(argument, reference != nullptr ? kindOf(reference->name) : ThingKind::nothing, wanted, what);
    return argument;
}

Argument StepReader::readProducts(const Value& json, std::string_view what) {
    auto references = ArgumentReader::references(json, what);
    for (const auto& reference : references) {
        const auto element = "an element of " + std::string(what);
        if (reference) checkArgument(*reference, kindOf(reference->name), ArgumentKind::product, element);
    }
    return references;
}

NotifyStep StepReader::readNotification(Fields& fields) {
    NotifyStep notify{requireText(fields.require("notify"), "\"notify\""), {}};
    if (!contains(notifications, notify.name)) throw Unusable("there is no notification " + inQuotes(notify.name));
    if (const auto* info = fields.find("info")) {
        for (const auto& [key, value] : requireDictionary(*info, "\"info\"")) {
            notify.info.set(key, arguments_.element(value));
        }
    }
    if (const auto* height = notify.info.find("height")) {  // of the keyboard
        (void)requireNumber(*height, "\"height\"", 0, tallestKeyboard);
    }
    return notify;
}

AdvanceStep StepReader::readAdvance(Fields& fields) const {
    if (!hasVirtualClock_) throw Unusable("\"advance\" needs the scenario's \"clock\"");
    AdvanceStep advance{requireNumber(fields.require("advance"), "\"advance\"", 0, longestAdvance)};
    if (const auto* settle = fields.find("settle")) advance.settle = requireBoolean(*settle, "\"settle\"");
    return advance;
}

std::string StepReader::readWindowText(Fields& fields, std::string_view key) const {
    if (interface_ != Interface::gtk) throw Unusable(inQuotes(key) + " needs --ui gtk");
    return requireText(fields.require(key), inQuotes(key));
}

WaitForStep StepReader::readWaitFor(Fields& fields) {
    WaitForStep wait{readPattern(fields.require("wait_for"), arguments_)};
    if (const auto* seconds = fields.find("seconds")) wait.limit = limitOf(*seconds, "\"seconds\"");
    return wait;
}

RepeatStep StepReader::readRepeat(Fields& fields, const Place& place, double rounds) {
    RepeatStep repeat;
    repeat.times = static_cast<std::size_t>(
        requireWholeNumber(fields.require("repeat"), "\"repeat\"", 0, static_cast<std::int64_t>(mostSteps)));
    const auto before = kept_;
    repeat.steps = readSteps(requireArray(fields.require("steps"), "\"steps\""), place,
                             rounds * static_cast<double>(repeat.times));
    for (const auto& [name, kind] : before) {
        const auto now = kept_.find(name);
        if (now != kept_.end() && now->second != kind) {
            throw Unusable("a repetition cannot keep " + inQuotes(name) + " as something else than before");
        }
    }
    return repeat;
}

ReleaseStep StepReader::readRelease(Fields& fields) {
    ReleaseStep release{requireText(fields.require("release"), "\"release\"")};
    static_cast<void>(kindOf(release.name));
    kept_.erase(release.name);
    return release;
}

ThingKind StepReader::kindOf(const std::string& name) const {
    const auto found = kept_.find(name);
    if (found == kept_.end()) throw Unusable("no step before has kept anything as " + inQuotes(name));
    return found->second;
}

}  // namespace orbinel::tool
