#include "apps/orbinel/play/player.hpp"

#include <atomic>
#include <exception>
#include <thread>
#include <utility>

#include "core/current_world.hpp"
#include "core/world.hpp"

namespace orbinel::tool {

namespace {

constexpr std::chrono::milliseconds advanceLimit{5000};  // real time, at each moment at which the clock stops

/// A value as it is; null for nothing and for objects.
Value resultOf(const Thing& thing) {
    const auto* value = std::get_if<Value>(&thing);
    return value != nullptr ? *value : Value(Null{});
}

bool isNothing(const Thing& thing) { return std::holds_alternative<std::monostate>(thing); }

}  // namespace

Player::Verdict Player::play() {
    try {
        host_.changeDevice(scenario_.device);
        host_.write(scenario_.preset);
        host_.launch(scenario_.host);
        runSteps(scenario_.steps);
        current_ = nullptr;
        host_.end();
    } catch (const NotCarriedOut& error) {
        const auto what = current_ != nullptr ? inWords(current_->place) : std::string("the play");
        complain_(what + " could not be carried out: " + error.what());
        return Verdict::notCarriedOut;
    }
    return expectationFailed_ ? Verdict::expectationFailed : Verdict::held;
}

void Player::runSteps(const std::vector<Step>& steps) {
    for (const auto& step : steps) runStep(step);
}

void Player::runStep(const Step& step) {
    current_ = &step;
    std::visit([this](const auto& action) { run(action); }, step.action);
    host_.drain();
}

// --- Calls ---

void Player::run(const CallStep& call) {
    if (!call.inBackground) return callChain(call);
    inBackground([&] { callChain(call); });
}

void Player::callChain(const CallStep& call) {
    const Trace::Action action(trace_);
    Thing object = call.receiver ? kept(*call.receiver) : Thing();
    Thing result;
    for (const auto& [operation, arguments] : call.chain) {
        std::vector<CallArgument> given;
        given.reserve(arguments.size());
        for (const auto& argument : arguments) given.push_back(resolved(argument));
        result = operation->call(object, given, trace_);
        if (!isNothing(result)) object = result;
    }
    trace_.write(numbered(resultOf(result)));
    if (call.keepAs) kept_[*call.keepAs] = std::move(object);
}

/// Main-queue work goes on meanwhile, so that the other thread may wait for it.
void Player::inBackground(const std::function<void()>& work) {
    auto& scheduler = host_.scheduler();
    std::atomic<bool> done = false;
    std::exception_ptr failure;
    std::thread thread([&] {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
        done = true;
        scheduler.postMain([] {});  // ends the waiting below
    });
    while (!done) host_.turn();
    thread.join();
    if (failure != nullptr) std::rethrow_exception(failure);
}

CallArgument Player::resolved(const Argument& argument) const {
    if (const auto* value = std::get_if<Value>(&argument)) return *value;
    if (const auto* callback = std::get_if<CallbackName>(&argument)) return *callback;
    if (const auto* list = std::get_if<References>(&argument)) {
        std::vector<Thing> things;
        for (const auto& reference : *list) things.push_back(reference ? kept(reference->name) : Thing());
        return things;
    }
    return kept(std::get<Reference>(argument).name);
}

/// Only a release in an earlier round of a repetition leaves a name without its thing.
const Thing& Player::kept(const std::string& name) const {
    const auto found = kept_.find(name);
    if (found == kept_.end()) throw NotCarriedOut("\"" + name + "\" has been released");
    return found->second;
}

Dictionary Player::numbered(Value result) const {
    const auto& place = current_->place;
    Dictionary entry{{"step", static_cast<std::int64_t>(place.front())}};
    Array inner;
    for (std::size_t i = 1; i < place.size(); ++i) inner.emplace_back(static_cast<std::int64_t>(place[i]));
    if (!inner.empty()) entry.set("inner", std::move(inner));
    entry.set("result", std::move(result));
    return entry;
}

void Player::run(const ReleaseStep& release) { kept_.erase(release.name); }

// --- The device and time ---

void Player::run(const NotifyStep& notify) {
    const Trace::Action action(trace_);
    host_.post(notify.name, notify.info);
}

void Player::run(const DeviceStep& device) { host_.changeDevice(device.changes); }

void Player::run(const DeliverStep& step) {
    const Trace::Action action(trace_);
    host_.deliver(step.delivery);
}

void Player::run(const TemplateStep& step) {
    const Trace::Action action(trace_);
    step.action(host_.interface().page());
}

void Player::run(const PageStep& page) {
    auto value = host_.interface().evaluate(page.expression);
    if (value.isAbsent()) value = Null{};
    trace_.write({{"page", std::move(value)}});
}

void Player::run(const ScreenshotStep& screenshot) { host_.interface().screenshot(screenshot.file); }

void Player::run(const ShakeStep& shake) { host_.shake(shake.acceleration); }

void Player::run(const AdvanceStep& advance) {
    if (!advance.settle) return host_.scheduler().advance(advance.seconds);
    host_.scheduler().advance(advance.seconds, [this] {
        if (!host_.settle(advanceLimit)) throw NotCarriedOut("a request is still in flight after 5 s");
    });
}

void Player::run(const SettleStep& settle) {
    if (host_.settle(settle.limit, settle.ignoredUrlParts) || !settle.failOnLimit) return;
    throw NotCarriedOut("a request is still in flight after the limit");
}

void Player::run(const WaitForStep& wait) {
    if (host_.drainUntil([&] { return trace_.count(wait.entry) > 0; }, wait.limit)) return;
    throw NotCarriedOut("there is no such entry within the limit");
}

void Player::run(const RelaunchStep& relaunch) {
    // Objects go with the process; values that were kept of it are the scenario's own.
    for (auto& [name, thing] : kept_) {
        if (auto* target = std::get_if<std::shared_ptr<Target>>(&thing)) target->reset();
    }
    relaunch.kill ? host_.kill() : host_.end();
    host_.launch(scenario_.host);
}

void Player::run(const RepeatStep& repeat) {
    for (std::size_t round = 0; round < repeat.times; ++round) runSteps(repeat.steps);
}

// --- Looking ---

void Player::run(const InspectStep& inspect) {
    const auto world = current_world::get();
    if (world == nullptr) throw NotCarriedOut("the library does not run");
    trace_.write({{"state", inspect.name}, {"value", inspect.inspection(*world, host_.secureItems())}});
}

void Player::run(const MarkStep&) { trace_.mark(); }

void Player::run(const Expectation& expectation) {
    const auto found = trace_.count(expectation.pattern);
    const bool held = expectation.holdsFor(found);
    trace_.write({{"expectation", held ? "held" : "failed"}, {"found", static_cast<std::int64_t>(found)}});
    if (held) return;
    expectationFailed_ = true;
    complain_(inWords(current_->place) + ": expected " + inWords(expectation) + ", found " + std::to_string(found));
}

}  // namespace orbinel::tool
