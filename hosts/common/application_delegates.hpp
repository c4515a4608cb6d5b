#pragma once

#include <memory>
#include <vector>

#include "base/mutex.hpp"
#include "hosts/common/kept_delegate.hpp"
#include "orbinel/platform/application.hpp"

namespace orbinel::hosts {

/// The delegates of an application and of its scenes, as `platform::Application` promises them. No lock is held while
/// an observer runs.
class ApplicationDelegates {
public:
    using Observer = platform::Application::DelegateObserver;
    using DelegatePointer = std::shared_ptr<platform::Delegate>;

    ApplicationDelegates();
    ~ApplicationDelegates();

    void setDelegate(DelegatePointer delegate);
    [[nodiscard]] DelegatePointer delegate() const { return delegate_.get(); }
    [[nodiscard]] platform::Ticket observeDelegate(Observer observer);

    void connectScene(const DelegatePointer& delegate);
    [[nodiscard]] platform::Ticket observeScenes(Observer observer);

private:
    class Observers;

    [[nodiscard]] std::vector<DelegatePointer> connectedScenes() const;

    // Shared with the tickets, which may outlive this.
    const std::shared_ptr<Observers> delegateObservers_;
    const std::shared_ptr<Observers> sceneObservers_;

    KeptDelegate delegate_;

    mutable Mutex mutex_;
    std::vector<std::weak_ptr<platform::Delegate>> scenes_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel::hosts
