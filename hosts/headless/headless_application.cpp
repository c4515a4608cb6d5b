#include "orbinel/headless/headless_application.hpp"

#include <utility>

#include "base/mutex.hpp"

namespace orbinel::headless {

struct HeadlessApplication::State {
    Mutex mutex;
    bool maySuspend ORBINEL_GUARDED_BY(mutex) = true;
    bool portrait ORBINEL_GUARDED_BY(mutex) = true;
    platform::ApplicationBundle bundle ORBINEL_GUARDED_BY(mutex) = {"1.0.0", "com.example.headless", "en"};
};

HeadlessApplication::HeadlessApplication() : state_(std::make_unique<State>()) {}
HeadlessApplication::~HeadlessApplication() = default;

void HeadlessApplication::setBackgroundMaySuspend(bool maySuspend) {
    const MutexLock lock(state_->mutex);
    state_->maySuspend = maySuspend;
}

void HeadlessApplication::setPortrait(bool portrait) {
    const MutexLock lock(state_->mutex);
    state_->portrait = portrait;
}

void HeadlessApplication::setBundle(platform::ApplicationBundle bundle) {
    const MutexLock lock(state_->mutex);
    state_->bundle = std::move(bundle);
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

}  // namespace orbinel::headless
