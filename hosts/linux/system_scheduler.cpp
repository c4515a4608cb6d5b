#include "hosts/linux/system_scheduler.hpp"

#include <algorithm>
#include <atomic>
#include <limits>
#include <optional>
#include <utility>

#include "base/mutex.hpp"
#include "hosts/common/glib_time_zone.hpp"
#include "hosts/linux/background_pool.hpp"
#include "hosts/linux/deadline_timer.hpp"
#include "hosts/linux/glib_main_source.hpp"
#include "hosts/linux/main_queue.hpp"

namespace orbinel::hosts {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// Far enough to be "never", near enough that no clock arithmetic overflows.
constexpr milliseconds longestDelay = std::chrono::hours(24 * 365 * 10);

milliseconds bounded(milliseconds delay) { return std::clamp(delay, milliseconds(0), longestDelay); }

/// A task that may be taken back until it begins. A cancelled one lets go of what it captured at once.
class CancellableTask {
public:
    explicit CancellableTask(platform::Task task) : task_(std::make_shared<platform::Task>(std::move(task))) {}

    void runOnce() {
        if (const auto task = take()) (*task)();
    }

    /// False once it has been cancelled.
    bool runAgain() {
        const auto task = copy();
        if (task) (*task)();
        return task != nullptr;
    }

    [[nodiscard]] bool isCancelled() const { return copy() == nullptr; }

    void cancel() { take(); }

private:
    using Pointer = std::shared_ptr<platform::Task>;

    Pointer take() {
        MutexLock lock(mutex_);
        return std::exchange(task_, nullptr);
    }

    Pointer copy() const {
        MutexLock lock(mutex_);
        return task_;
    }

    mutable Mutex mutex_;
    Pointer task_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace

struct SystemScheduler::Machinery : std::enable_shared_from_this<Machinery> {
    using Hand = void (Machinery::*)(platform::Task);

    struct Repetition {
        CancellableTask task;
        milliseconds interval;
        steady_clock::time_point next;          // of the timer thread alone
        std::atomic<bool> waitsInQueue{false};  // a tick that finds the last one waiting is missed

        Repetition(platform::Task work, milliseconds every)
            : task(std::move(work)), interval(every), next(steady_clock::now() + every) {}
    };

    const std::shared_ptr<MainQueue> mainQueue = std::make_shared<MainQueue>();
    BackgroundPool pool;
    DeadlineTimer timer;
    std::atomic<bool> quit{false};
    Mutex mutex;
    std::optional<GlibMainSource> glibSource ORBINEL_GUARDED_BY(mutex);

    void toMain(platform::Task task) { mainQueue->post(std::move(task)); }
    void toGlobal(platform::Task task) { pool.post(std::move(task)); }

    platform::Ticket after(milliseconds delay, platform::Task task, Hand hand) {
        auto cancellable = std::make_shared<CancellableTask>(std::move(task));
        const auto id =
            timer.callAt(steady_clock::now() + bounded(delay), [weak = weak_from_this(), cancellable, hand] {
                if (const auto self = weak.lock()) ((*self).*hand)([cancellable] { cancellable->runOnce(); });
            });
        return platform::Ticket([weak = weak_from_this(), cancellable, id] {
            cancellable->cancel();
            if (const auto self = weak.lock()) self->timer.cancel(id);
        });
    }

    void tickLater(const std::shared_ptr<Repetition>& repetition) {
        timer.callAt(repetition->next, [weak = weak_from_this(), repetition] {
            const auto self = weak.lock();
            if (!self || repetition->task.isCancelled()) return;
            self->tick(repetition);
            const auto late = std::max(steady_clock::now() - repetition->next, steady_clock::duration(0));
            repetition->next += repetition->interval * (late / repetition->interval + 1);
            self->tickLater(repetition);
        });
    }

    void tick(const std::shared_ptr<Repetition>& repetition) {
        if (repetition->waitsInQueue.exchange(true)) return;
        toMain([repetition] {
            repetition->waitsInQueue = false;
            repetition->task.runAgain();
        });
    }

    void close() {
        {
            MutexLock lock(mutex);
            glibSource.reset();
        }
        timer.close();
        mainQueue->close();
        pool.close();
    }
};

SystemScheduler::SystemScheduler() : machinery_(std::make_shared<Machinery>()) {}

SystemScheduler::~SystemScheduler() { machinery_->close(); }

double SystemScheduler::now() const noexcept {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

platform::LocalTime SystemScheduler::localTime(double secondsSince1970) const noexcept {
    return GlibTimeZone::machine().localTime(secondsSince1970);
}

bool SystemScheduler::isMain() const noexcept { return machinery_->mainQueue->isMain(); }

// What follows holds the machinery: a task may run, and destroy the scheduler, before the call has returned.

void SystemScheduler::postMain(platform::Task task) noexcept { std::shared_ptr(machinery_)->toMain(std::move(task)); }

platform::Ticket SystemScheduler::postMainAfter(milliseconds delay, platform::Task task) noexcept {
    return std::shared_ptr(machinery_)->after(delay, std::move(task), &Machinery::toMain);
}

void SystemScheduler::postGlobal(platform::Task task) noexcept {
    std::shared_ptr(machinery_)->toGlobal(std::move(task));
}

platform::Ticket SystemScheduler::postGlobalAfter(milliseconds delay, platform::Task task) noexcept {
    return std::shared_ptr(machinery_)->after(delay, std::move(task), &Machinery::toGlobal);
}

platform::Ticket SystemScheduler::repeatOnMain(milliseconds interval, platform::Task task) noexcept {
    const auto every = std::max(bounded(interval), milliseconds(1));
    auto repetition = std::make_shared<Machinery::Repetition>(std::move(task), every);
    std::shared_ptr(machinery_)->tickLater(repetition);
    return platform::Ticket([repetition] { repetition->task.cancel(); });
}

std::size_t SystemScheduler::runMainQueue() {
    const auto queue = machinery_->mainQueue;
    return queue->runReady(std::numeric_limits<std::size_t>::max());
}

bool SystemScheduler::runUntil(const std::function<bool()>& predicate, milliseconds limit) {
    const auto queue = machinery_->mainQueue;  // a task may destroy the scheduler
    return queue->runUntil(predicate, steady_clock::now() + bounded(limit));
}

void SystemScheduler::run() {
    const auto machinery = machinery_;  // a task may destroy the scheduler
    const auto quitAsked = [&] { return machinery->quit.exchange(false); };
    machinery->mainQueue->runUntil(quitAsked, steady_clock::now() + longestDelay);
}

void SystemScheduler::quit() noexcept {
    machinery_->quit = true;
    machinery_->mainQueue->wake();
}

void SystemScheduler::attachToGlibMainContext() {
    MutexLock lock(machinery_->mutex);
    if (!machinery_->glibSource) machinery_->glibSource.emplace(machinery_->mainQueue);
}

}  // namespace orbinel::hosts
