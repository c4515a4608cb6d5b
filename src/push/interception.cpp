#include "push/interception.hpp"

#include <cxxabi.h>

#include <algorithm>
#include <exception>
#include <utility>

#include "base/guard.hpp"

namespace orbinel {

namespace {

using platform::Delegate;
using platform::DelegateArguments;
using platform::DelegateImplementation;
using platform::DelegateResult;

/// What the application's own implementation answered or threw.
struct OwnOutcome {
    DelegateResult answer;
    std::exception_ptr failure;
};

OwnOutcome outcomeOf(const DelegateImplementation* own, Delegate& self, const DelegateArguments& arguments) {
    if (own == nullptr || !*own) return {};
    try {
        return {(*own)(self, arguments), nullptr};
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (...) {
        return {std::nullopt, std::current_exception()};
    }
}

}  // namespace

Interception::Interception(const Needs& needs)
    : reports_(needs.reports),
      configurations_(needs.configurations),
      device_(needs.device),
      operations_(needs.operations),
      lifetime_(needs.lifetime),
      application_(needs.application),
      notifications_(needs.notifications) {}

Interception::~Interception() = default;

// --- Which classes ---

void Interception::setObservers() noexcept {
    guarded(reports_, "-[OrbinelPush setObservers]", [&] {
        using Pointer = std::shared_ptr<Delegate>;
        std::vector<platform::Ticket> observers;
        observers.push_back(application_.observeDelegate(
            lifetime_.whileAlive([this](const Pointer& delegate) { setOrbinelDelegate(*delegate); })));
        observers.push_back(application_.observeScenes(
            lifetime_.whileAlive([this](const Pointer& delegate) { injectMethodsForScene(*delegate); })));
        const MutexLock lock(mutex_);
        std::swap(observers_, observers);
    });
}

void Interception::setOrbinelDelegate(const Delegate& delegate) {
    {
        const MutexLock lock(mutex_);
        if (delegateClass_ != nullptr) return;
        delegateClass_ = delegate.type();
    }
    injectSelectors(delegate.type(), ReplacedOperations::ofApplication());
    injectSelectors(delegate.type(), ReplacedOperations::ofNotificationCentre());
}

void Interception::injectMethodsForScene(const Delegate& delegate) {
    injectSelector(delegate.type(), ReplacedOperations::ofScene());
}

void Interception::callUserNotificationCenterSwizzlers() noexcept {
    guarded(reports_, "-[OrbinelPush callUserNotificationCenterSwizzlers]", [&] {
        if (device_.isHybridSDK()) return;
        const auto delegate = notifications_.delegate();
        if (delegate == nullptr) return;
        const bool isDone = [&] {
            const MutexLock lock(mutex_);
            return delegate->type() == delegateClass_;
        }();
        if (!isDone) injectSelectors(delegate->type(), ReplacedOperations::ofNotificationCentre());
    });
}

void Interception::injectSelectors(const ClassPointer& type, std::span<const Replacement> replacements) {
    for (const auto& replacement : replacements) {
        if (replacement.swizzler && !configurations_.isSwizzlerEnabled(*replacement.swizzler)) continue;
        injectSelector(type, replacement);
    }
}

// --- One operation ---

void Interception::injectSelector(const ClassPointer& type, const Replacement& replacement) {
    if (begin(type, replacement)) finish(install(type, replacement));
}

/// No, where this was done to the class before: two objects may be of one class.
bool Interception::begin(const ClassPointer& type, const Replacement& replacement) {
    const MutexLock lock(mutex_);
    std::erase_if(installations_, [](const Installation& one) { return one.type.expired(); });
    if (over_ || isInstalled(*type, replacement)) return false;
    installations_.push_back({type, {}, &replacement, {}});
    return true;
}

bool Interception::isInstalled(const platform::DelegateClass& type, const Replacement& replacement) {
    return std::any_of(installations_.begin(), installations_.end(), [&](const Installation& one) {
        return one.replacement == &replacement && one.type.lock().get() == &type;
    });
}

void Interception::finish(Installation installation) {
    const auto type = installation.type.lock();
    {
        const MutexLock lock(mutex_);
        for (auto& one : installations_) {
            if (one.replacement == installation.replacement && one.type.lock() == type) {
                std::swap(one, installation);
                return;
            }
        }
    }
    takeBack(installation);  // the world has ended meanwhile
}

Interception::Installation Interception::install(const ClassPointer& type, const Replacement& replacement) {
    const auto operation = replacement.operation;
    if (type->addOperation(operation, implementationOf(replacement, nullptr))) {
        return {type, type->implementation(operation), &replacement, {}};
    }
    // The name is taken where somebody stayed in front of an earlier world's replacement, which only passes on now.
    std::string ownName(replacement.name);
    const auto ours = implementationOf(replacement, type->implementation(operation));
    while (!type->addOperation(ownName, ours)) ownName += '\'';
    const auto installed = type->implementation(ownName);
    type->exchangeImplementations(operation, ownName);
    return {type, installed, &replacement, std::move(ownName)};
}

/// The application's own implementation is kept here as well, so that a call that is under way while the classes become
/// what they were finds it.
DelegateImplementation Interception::implementationOf(const Replacement& replacement, ImplementationPointer own) {
    auto before = lifetime_.whileAlive(
        [this, &replacement](const DelegateArguments& arguments) { operations_.beforeOwn(replacement, arguments); });
    auto after =
        lifetime_.whileAlive([this, &replacement](const DelegateArguments& arguments, std::exception_ptr& failure) {
            operations_.afterOwn(replacement, arguments, std::exchange(failure, nullptr));
        });
    return [before = std::move(before), after = std::move(after), own = std::move(own), &replacement](
               Delegate& self, const DelegateArguments& arguments) mutable -> DelegateResult {
        before(arguments);
        auto [answer, failure] = outcomeOf(own.get(), self, arguments);
        after(arguments, failure);
        if (failure != nullptr) std::rethrow_exception(failure);  // there is nobody to report it to any more
        if (own == nullptr) arguments.completion();
        return replacement.answers ? DelegateResult(answer.value_or(false)) : answer;
    };
}

bool Interception::isOwn(const platform::DelegateClass& type, std::string_view operation) const {
    const auto now = type.implementation(operation);
    if (now == nullptr) return false;
    const MutexLock lock(mutex_);
    return std::none_of(installations_.begin(), installations_.end(), [&](const Installation& one) {
        return one.ownName.empty() && one.replacement->operation == operation && one.ours.lock() == now;
    });
}

// --- Taking back ---

void Interception::takeBack() noexcept {
    guarded(reports_, "-[OrbinelPush takeBack]", [&] {
        std::vector<Installation> installations;
        std::vector<platform::Ticket> observers;
        {
            const MutexLock lock(mutex_);
            over_ = true;
            std::swap(installations, installations_);
            std::swap(observers, observers_);
        }
        observers.clear();
        for (const auto& installation : installations) takeBack(installation);
    });
}

void Interception::takeBack(const Installation& installation) {
    const auto type = installation.type.lock();
    const auto ours = installation.ours.lock();
    const auto operation = installation.replacement->operation;
    const auto& ownName = installation.ownName;
    if (type == nullptr || ours == nullptr || type->implementation(operation) != ours) return;
    if (!ownName.empty()) type->exchangeImplementations(operation, ownName);
    type->removeOperation(ownName.empty() ? operation : ownName);
}

}  // namespace orbinel
