#include "orbinel/headless/headless_notifications.hpp"

#include "base/mutex.hpp"

namespace orbinel::headless {

struct HeadlessNotifications::State {
    [[nodiscard]] platform::NotificationSettings read() {
        const MutexLock lock(mutex);
        return settings;
    }

    Mutex mutex;
    platform::NotificationSettings settings ORBINEL_GUARDED_BY(mutex);
};

HeadlessNotifications::HeadlessNotifications() : state_(std::make_unique<State>()) {}
HeadlessNotifications::~HeadlessNotifications() = default;

void HeadlessNotifications::setSettings(platform::NotificationSettings settings) {
    const MutexLock lock(state_->mutex);
    state_->settings = settings;
}

void HeadlessNotifications::readSettings(std::function<void(platform::NotificationSettings)> completion) noexcept {
    completion(state_->read());
}

}  // namespace orbinel::headless
