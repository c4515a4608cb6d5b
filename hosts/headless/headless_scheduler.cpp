#include "orbinel/headless/headless_scheduler.hpp"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <map>
#include <thread>
#include <utility>

#include "base/mutex.hpp"
#include "hosts/common/glib_time_zone.hpp"
#include "hosts/headless/task_thread.hpp"
#include "hosts/headless/timeline.hpp"

namespace orbinel::headless {

namespace {

using platform::Task;
using platform::Ticket;

double wallTime() noexcept {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

Microseconds steadyTime() noexcept {
    return std::chrono::duration_cast<Microseconds>(std::chrono::steady_clock::now().time_since_epoch());
}

Microseconds toMicroseconds(double seconds) noexcept {
    constexpr double farthest = 253'402'300'800;  // end of the year 9999
    return Microseconds{std::llround(std::clamp(seconds, -farthest, farthest) * 1e6)};
}

double toSeconds(Microseconds time) noexcept { return static_cast<double>(time.count()) / 1e6; }

}  // namespace

struct HeadlessScheduler::State {
    explicit State(std::optional<Microseconds> start) : isVirtual(start), virtualNow(start.value_or(Microseconds{0})) {}

    /// On the timeline: since 1970 with a virtual clock; since some moment with the real one, whose jumps must not
    /// touch delays.
    [[nodiscard]] Microseconds timelineNow() const ORBINEL_REQUIRES(mutex) {
        return isVirtual ? virtualNow : steadyTime();
    }

    [[nodiscard]] bool hasDue() const ORBINEL_REQUIRES(mutex) {
        const auto first = timeline.firstDue();
        return first && *first <= timelineNow();
    }

    /// The next due work, taken off the timeline; repeated work already stands there again.
    [[nodiscard]] std::shared_ptr<Work> takeDue() ORBINEL_EXCLUDES(mutex) {
        const MutexLock lock(mutex);
        return hasDue() ? timeline.takeFirst(timelineNow()) : nullptr;
    }

    void add(const std::shared_ptr<Work>& work, std::chrono::milliseconds delay) ORBINEL_EXCLUDES(mutex) {
        const MutexLock lock(mutex);
        constexpr std::chrono::milliseconds none{0};
        constexpr std::chrono::milliseconds farthest = std::chrono::hours{24 * 365 * 100};
        timeline.add(work, timelineNow() + std::clamp(delay, none, farthest));
        changed.notifyAll();
    }

    void moveTo(Microseconds time) ORBINEL_EXCLUDES(mutex) {
        const MutexLock lock(mutex);
        virtualNow = std::max(virtualNow, time);
    }

    /// The next stop of an `advance` that ends at this time; nothing where there is none before it.
    [[nodiscard]] std::optional<Microseconds> nextStop(Microseconds end) ORBINEL_EXCLUDES(mutex) {
        const MutexLock lock(mutex);
        const auto first = timeline.firstDue();
        return first && *first < end ? first : std::nullopt;
    }

    [[nodiscard]] static Ticket schedule(const std::shared_ptr<State>& state, const std::shared_ptr<Work>& work,
                                         std::chrono::milliseconds delay) {
        state->add(work, delay);
        // The ticket's reference is the last one to go, so that the task is destroyed without the lock.
        return Ticket([work, weak = std::weak_ptr(state)] {
            if (const auto alive = weak.lock()) {
                const MutexLock lock(alive->mutex);
                alive->timeline.remove(*work);
            }
        });
    }

    const std::thread::id mainThread = std::this_thread::get_id();
    const bool isVirtual;
    TaskThread globalThread;

    mutable Mutex mutex;
    ConditionVariable changed;
    Microseconds virtualNow ORBINEL_GUARDED_BY(mutex);
    Timeline timeline ORBINEL_GUARDED_BY(mutex);
    hosts::GlibTimeZone zone ORBINEL_GUARDED_BY(mutex){"UTC"};
};

HeadlessScheduler::HeadlessScheduler(double start) : state_(std::make_shared<State>(toMicroseconds(start))) {}
HeadlessScheduler::HeadlessScheduler(RealClock) : state_(std::make_shared<State>(std::nullopt)) {}

HeadlessScheduler::~HeadlessScheduler() {
    Timeline dropped;  // destroyed after the lock has been given back: tasks may own tickets
    const MutexLock lock(state_->mutex);
    std::swap(dropped, state_->timeline);
}

void HeadlessScheduler::runUntilIdle() {
    assert(isMain());
    while (const auto work = state_->takeDue()) {
        if (work->queue == Queue::main) {
            work->task();
        } else {
            state_->globalThread.runAndWait(work->task);
        }
    }
}

void HeadlessScheduler::advance(double seconds, const std::function<void()>& settle) {
    if (!state_->isVirtual) return;
    const auto settleHere = [&] {
        do {
            runUntilIdle();
            if (settle) settle();
        } while (hasDueWork());
    };
    const auto end = toMicroseconds(now() + std::max(seconds, 0.0));
    settleHere();
    while (const auto stop = state_->nextStop(end)) {
        state_->moveTo(*stop);
        settleHere();
    }
    state_->moveTo(end);
    settleHere();
}

void HeadlessScheduler::jump(double seconds) {
    if (state_->isVirtual) state_->moveTo(toMicroseconds(now() + seconds));
}

bool HeadlessScheduler::waitForWork(std::chrono::milliseconds timeout) {
    const auto end = steadyTime() + timeout;
    const MutexLock lock(state_->mutex);
    while (!state_->hasDue() && steadyTime() < end) {
        auto next = end;
        if (const auto first = state_->timeline.firstDue(); first && !state_->isVirtual) next = std::min(next, *first);
        state_->changed.waitUntil(state_->mutex, std::chrono::steady_clock::time_point(next));
    }
    return state_->hasDue();
}

bool HeadlessScheduler::hasDueWork() const {
    const MutexLock lock(state_->mutex);
    return state_->hasDue();
}

std::optional<double> HeadlessScheduler::nextDueTime() const {
    const MutexLock lock(state_->mutex);
    const auto first = state_->timeline.firstDue();
    if (!first) return std::nullopt;
    return state_->isVirtual ? toSeconds(*first) : wallTime() + toSeconds(*first - steadyTime());
}

void HeadlessScheduler::setTimeZone(const std::string& name) {
    hosts::GlibTimeZone zone(name);
    const MutexLock lock(state_->mutex);
    state_->zone = std::move(zone);
}

double HeadlessScheduler::now() const noexcept {
    if (!state_->isVirtual) return wallTime();
    const MutexLock lock(state_->mutex);
    return toSeconds(state_->virtualNow);
}

platform::LocalTime HeadlessScheduler::localTime(double secondsSince1970) const noexcept {
    const auto zone = [this] {
        const MutexLock lock(state_->mutex);
        return state_->zone;
    }();
    return zone.localTime(secondsSince1970);
}

bool HeadlessScheduler::isMain() const noexcept { return std::this_thread::get_id() == state_->mainThread; }

void HeadlessScheduler::postMain(Task task) noexcept {
    state_->add(std::make_shared<Work>(Queue::main, std::move(task)), std::chrono::milliseconds{0});
}

Ticket HeadlessScheduler::postMainAfter(std::chrono::milliseconds delay, Task task) noexcept {
    return State::schedule(state_, std::make_shared<Work>(Queue::main, std::move(task)), delay);
}

void HeadlessScheduler::postGlobal(Task task) noexcept {
    state_->add(std::make_shared<Work>(Queue::global, std::move(task)), std::chrono::milliseconds{0});
}

Ticket HeadlessScheduler::postGlobalAfter(std::chrono::milliseconds delay, Task task) noexcept {
    return State::schedule(state_, std::make_shared<Work>(Queue::global, std::move(task)), delay);
}

Ticket HeadlessScheduler::repeatOnMain(std::chrono::milliseconds interval, Task task) noexcept {
    const auto held = std::max(interval, std::chrono::milliseconds{1});
    return State::schedule(state_, std::make_shared<Work>(Queue::main, std::move(task), held), held);
}

}  // namespace orbinel::headless
