#pragma once

#include <memory>
#include <utility>

#include "base/mutex.hpp"
#include "orbinel/platform/delegate.hpp"

namespace orbinel::hosts {

/// The one delegate that something has at a time. Threads: any; what is replaced is let go of without the lock.
class KeptDelegate {
public:
    void set(std::shared_ptr<platform::Delegate> delegate) {
        const MutexLock lock(mutex_);
        delegate_.swap(delegate);
    }

    [[nodiscard]] std::shared_ptr<platform::Delegate> get() const {
        const MutexLock lock(mutex_);
        return delegate_;
    }

private:
    mutable Mutex mutex_;
    std::shared_ptr<platform::Delegate> delegate_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel::hosts
