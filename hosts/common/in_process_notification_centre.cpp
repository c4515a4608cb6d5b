#include "hosts/common/in_process_notification_centre.hpp"

#include <atomic>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "base/mutex.hpp"

namespace orbinel::hosts {

namespace {

struct Registration {
    explicit Registration(platform::NotificationCentre::Observer function) : observer(std::move(function)) {}

    const platform::NotificationCentre::Observer observer;
    std::atomic<bool> dropped{false};
};

using Registrations = std::vector<std::shared_ptr<Registration>>;

}  // namespace

struct InProcessNotificationCentre::Registry {
    [[nodiscard]] Registrations of(std::string_view name) {
        const MutexLock lock(mutex);
        const auto found = byName.find(name);
        return found == byName.end() ? Registrations{} : found->second;
    }

    void add(const std::string& name, std::shared_ptr<Registration> registration) {
        const MutexLock lock(mutex);
        byName[name].push_back(std::move(registration));
    }

    void remove(const std::string& name, const std::shared_ptr<Registration>& registration) {
        const MutexLock lock(mutex);
        const auto found = byName.find(name);
        if (found == byName.end()) return;
        std::erase(found->second, registration);
        if (found->second.empty()) byName.erase(found);
    }

    Mutex mutex;
    std::map<std::string, Registrations, std::less<>> byName ORBINEL_GUARDED_BY(mutex);
};

InProcessNotificationCentre::InProcessNotificationCentre() : registry_(std::make_shared<Registry>()) {}
InProcessNotificationCentre::~InProcessNotificationCentre() = default;

void InProcessNotificationCentre::post(std::string_view name, const Dictionary& info) noexcept {
    for (const auto& registration : registry_->of(name)) {
        if (!registration->dropped) registration->observer(info);
    }
}

platform::Ticket InProcessNotificationCentre::addObserver(std::string_view name, Observer observer) noexcept {
    const auto registration = std::make_shared<Registration>(std::move(observer));
    registry_->add(std::string(name), registration);
    // The ticket's reference is the last one to go, so that the observer is destroyed without the lock.
    return platform::Ticket([registration, name = std::string(name), weak = std::weak_ptr(registry_)] {
        registration->dropped = true;
        if (const auto registry = weak.lock()) registry->remove(name, registration);
    });
}

}  // namespace orbinel::hosts
