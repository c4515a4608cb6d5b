#include "hosts/common/application_delegates.hpp"

#include <algorithm>
#include <atomic>
#include <utility>

namespace orbinel::hosts {

class ApplicationDelegates::Observers {
public:
    /// What is present is asked for once the observer hears of what comes, and told to that observer alone.
    template <typename Present>
    static platform::Ticket add(const std::shared_ptr<Observers>& observers, Observer function, Present present) {
        const auto added = std::make_shared<Registration>(std::move(function));
        observers->insert(added);
        for (const auto& delegate : present()) added->tell(delegate);
        // The ticket's reference is the last one to go, so that the observer is destroyed without the lock.
        return platform::Ticket([added, weak = std::weak_ptr(observers)] {
            added->dropped = true;
            if (const auto all = weak.lock()) all->remove(added);
        });
    }

    void tell(const DelegatePointer& delegate) {
        const auto registrations = [this] {
            const MutexLock lock(mutex_);
            return registrations_;
        }();
        for (const auto& registration : registrations) registration->tell(delegate);
    }

private:
    struct Registration {
        explicit Registration(Observer function) : observer(std::move(function)) {}
        void tell(const DelegatePointer& delegate) const {
            if (!dropped) observer(delegate);
        }

        const Observer observer;
        std::atomic<bool> dropped{false};
    };
    using RegistrationPointer = std::shared_ptr<Registration>;

    void insert(RegistrationPointer registration) {
        const MutexLock lock(mutex_);
        registrations_.push_back(std::move(registration));
    }

    void remove(const RegistrationPointer& registration) {
        const MutexLock lock(mutex_);
        std::erase(registrations_, registration);
    }

    Mutex mutex_;
    std::vector<RegistrationPointer> registrations_ ORBINEL_GUARDED_BY(mutex_);
};

ApplicationDelegates::ApplicationDelegates()
    : delegateObservers_(std::make_shared<Observers>()), sceneObservers_(std::make_shared<Observers>()) {}
ApplicationDelegates::~ApplicationDelegates() = default;

void ApplicationDelegates::setDelegate(DelegatePointer delegate) {
    if (delegate != nullptr) delegateObservers_->tell(delegate);
    delegate_.set(std::move(delegate));
}

platform::Ticket ApplicationDelegates::observeDelegate(Observer observer) {
    return Observers::add(delegateObservers_, std::move(observer), [this] {
        std::vector<DelegatePointer> present;
        if (auto delegate = delegate_.get()) present.push_back(std::move(delegate));
        return present;
    });
}

void ApplicationDelegates::connectScene(const DelegatePointer& delegate) {
    if (delegate == nullptr) return;
    {
        const MutexLock lock(mutex_);
        std::erase_if(scenes_, [](const auto& scene) { return scene.expired(); });
        scenes_.push_back(delegate);
    }
    sceneObservers_->tell(delegate);
}

platform::Ticket ApplicationDelegates::observeScenes(Observer observer) {
    return Observers::add(sceneObservers_, std::move(observer), [this] { return connectedScenes(); });
}

std::vector<ApplicationDelegates::DelegatePointer> ApplicationDelegates::connectedScenes() const {
    std::vector<DelegatePointer> connected;
    const MutexLock lock(mutex_);
    for (const auto& scene : scenes_) {
        if (auto delegate = scene.lock()) connected.push_back(std::move(delegate));
    }
    return connected;
}

}  // namespace orbinel::hosts
