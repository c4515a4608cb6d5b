#include "orbinel/headless/headless_application.hpp"

#include <utility>

#include "base/mutex.hpp"
#include "hosts/common/application_delegates.hpp"
#include "hosts/common/callable.hpp"

namespace orbinel::headless {

struct HeadlessApplication::State {
    void open(Opened opening) {
        const MutexLock lock(mutex);
        opened.push_back(std::move(opening));
    }

    Mutex mutex;
    bool maySuspend ORBINEL_GUARDED_BY(mutex) = true;
    bool portrait ORBINEL_GUARDED_BY(mutex) = true;
    platform::ApplicationBundle bundle ORBINEL_GUARDED_BY(mutex) = {"1.0.0", "com.example.headless", "en", {}, {}};
    platform::ApplicationState state ORBINEL_GUARDED_BY(mutex) = platform::ApplicationState::active;
    bool opens ORBINEL_GUARDED_BY(mutex) = true;
    std::vector<Opened> opened ORBINEL_GUARDED_BY(mutex);

    hosts::ApplicationDelegates delegates;
};

HeadlessApplication::HeadlessApplication(std::shared_ptr<platform::Scheduler> scheduler)
    : scheduler_(std::move(scheduler)), state_(std::make_unique<State>()) {}
HeadlessApplication::~HeadlessApplication() = default;

void HeadlessApplication::setBackgroundMaySuspend(bool maySuspend) {
    const MutexLock lock(state_->mutex);
    state_->maySuspend = maySuspend;
}

void HeadlessApplication::setPortrait(bool portrait) {
    const MutexLock lock(state_->mutex);
    state_->portrait = portrait;
}

void HeadlessApplication::setState(platform::ApplicationState state) {
    const MutexLock lock(state_->mutex);
    state_->state = state;
}

void HeadlessApplication::setOpens(bool something) {
    const MutexLock lock(state_->mutex);
    state_->opens = something;
}

void HeadlessApplication::setBundle(platform::ApplicationBundle bundle) {
    const MutexLock lock(state_->mutex);
    state_->bundle = std::move(bundle);
}

std::vector<Opened> HeadlessApplication::opened() const {
    const MutexLock lock(state_->mutex);
    return state_->opened;
}

platform::ApplicationState HeadlessApplication::state() const noexcept {
    const MutexLock lock(state_->mutex);
    return state_->state;
}

bool HeadlessApplication::backgroundMaySuspend() const noexcept {
    const MutexLock lock(state_->mutex);
    return state_->maySuspend;
}

bool HeadlessApplication::isPortrait() const noexcept {
    const MutexLock lock(state_->mutex);
    return state_->portrait;
}

platform::ApplicationBundle HeadlessApplication::bundle() const noexcept {
    const MutexLock lock(state_->mutex);
    return state_->bundle;
}

void HeadlessApplication::openUrl(const std::string& url, std::function<void(bool opened)> completion) noexcept {
    state_->open({Opened::Where::system, url});
    const bool opened = [this] {
        const MutexLock lock(state_->mutex);
        return state_->opens;
    }();
    scheduler_->postMain([completion = hosts::callable(std::move(completion)), opened] { completion(opened); });
}

void HeadlessApplication::openSettings() noexcept { state_->open({Opened::Where::settings, {}}); }

void HeadlessApplication::openNotificationSettings() noexcept {
    state_->open({Opened::Where::notificationSettings, {}});
}

void HeadlessApplication::setDelegate(std::shared_ptr<platform::Delegate> delegate) noexcept {
    state_->delegates.setDelegate(std::move(delegate));
}

std::shared_ptr<platform::Delegate> HeadlessApplication::delegate() const noexcept {
    return state_->delegates.delegate();
}

platform::Ticket HeadlessApplication::observeDelegate(DelegateObserver observer) noexcept {
    return state_->delegates.observeDelegate(std::move(observer));
}

void HeadlessApplication::connectScene(const std::shared_ptr<platform::Delegate>& delegate) noexcept {
    state_->delegates.connectScene(delegate);
}

platform::Ticket HeadlessApplication::observeScenes(DelegateObserver observer) noexcept {
    return state_->delegates.observeScenes(std::move(observer));
}

}  // namespace orbinel::headless
