#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/lifetime.hpp"
#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/platform/delegate.hpp"
#include "orbinel/platform/notifications.hpp"
#include "orbinel/platform/ticket.hpp"
#include "push/configurations.hpp"
#include "push/replaced_operations.hpp"
#include "user/device_attributes.hpp"

namespace orbinel {

/// Puts the library in front of the operations of the application's delegates, so that an application needs no code of
/// its own for device tokens, pushes and links.
///
/// An operation that a class does not implement is added to it. One that it implements is exchanged: what the
/// application wrote stands under the replacement's name meanwhile, and runs first. Where it wrote nothing, the library
/// calls the completion handler. All of it is taken back when the world ends; a call that comes later does what the
/// application itself does and nothing else.
///
/// Threads: any, the main thread as a rule.
class Interception {
public:
    struct Needs {
        Reports& reports;
        const OrbinelConfigurations& configurations;
        const OrbinelDeviceAttributes& device;
        ReplacedOperations& operations;
        const Lifetime& lifetime;
        platform::Application& application;
        platform::Notifications& notifications;
    };

    explicit Interception(const Needs& needs);
    ~Interception();
    Interception(const Interception&) = delete;
    Interception& operator=(const Interception&) = delete;

    /// Of the application's delegates, the present one and those to come, the first one's class is changed; of the
    /// scenes', each class. Once.
    void setObservers() noexcept;

    /// Changes the class of the notification centre's delegate, where it is another than the application delegate's.
    /// Nothing in an application of a wrapper, which does this itself.
    void callUserNotificationCenterSwizzlers() noexcept;

    /// Whether the operation of this class is the application's: it implements it, and not only because the library
    /// has added it.
    [[nodiscard]] bool isOwn(const platform::DelegateClass& type, std::string_view operation) const;

    /// Leaves the classes as they were, and changes none any more. Where somebody else has put themselves in front of
    /// the library meanwhile, they stay there.
    void takeBack() noexcept;

private:
    using ClassPointer = std::shared_ptr<platform::DelegateClass>;
    using ImplementationPointer = std::shared_ptr<const platform::DelegateImplementation>;

    /// What was done to one operation of a class.
    struct Installation {
        // The scene's alone, for they may know its window.
        std::weak_ptr<platform::DelegateClass> type;
        std::weak_ptr<const platform::DelegateImplementation> ours;  // empty while it is being installed

        const Replacement* replacement = nullptr;
        std::string ownName;  // under which the application's implementation stands; empty: it had none
    };

    void setOrbinelDelegate(const platform::Delegate& delegate);
    void injectMethodsForScene(const platform::Delegate& delegate);
    void injectSelectors(const ClassPointer& type, std::span<const Replacement> replacements);
    void injectSelector(const ClassPointer& type, const Replacement& replacement);
    [[nodiscard]] bool begin(const ClassPointer& type, const Replacement& replacement);
    void finish(Installation installation);
    [[nodiscard]] Installation install(const ClassPointer& type, const Replacement& replacement);
    [[nodiscard]] bool isInstalled(const platform::DelegateClass& type, const Replacement& replacement)
        ORBINEL_REQUIRES(mutex_);
    [[nodiscard]] platform::DelegateImplementation implementationOf(const Replacement& replacement,
                                                                    ImplementationPointer own);
    static void takeBack(const Installation& installation);

    Reports& reports_;
    const OrbinelConfigurations& configurations_;
    const OrbinelDeviceAttributes& device_;
    ReplacedOperations& operations_;
    const Lifetime& lifetime_;
    platform::Application& application_;
    platform::Notifications& notifications_;

    mutable Mutex mutex_;
    bool over_ ORBINEL_GUARDED_BY(mutex_) = false;
    ClassPointer delegateClass_ ORBINEL_GUARDED_BY(mutex_);  // the application delegate's that was changed
    std::vector<Installation> installations_ ORBINEL_GUARDED_BY(mutex_);
    std::vector<platform::Ticket> observers_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel
