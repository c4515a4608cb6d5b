#include "orbinel/platform/delegate.hpp"

#include <atomic>
#include <map>
#include <utility>

#include "base/mutex.hpp"

namespace orbinel::platform {

// --- CompletionHandler ---

struct CompletionHandler::State {
    std::atomic<bool> called{false};
    std::function<void()> handler;  // touched by the one call that counts
};

CompletionHandler::CompletionHandler(std::function<void()> handler) {
    if (!handler) return;
    state_ = std::make_shared<State>();
    state_->handler = std::move(handler);
}

void CompletionHandler::operator()() const {
    if (state_ == nullptr || state_->called.exchange(true)) return;
    std::exchange(state_->handler, nullptr)();
}

// --- DelegateClass ---

struct DelegateClass::State {
    using Implementations = std::map<std::string, std::shared_ptr<const DelegateImplementation>, std::less<>>;

    explicit State(std::string nameForLogs) : name(std::move(nameForLogs)) {}

    const std::string name;
    Mutex mutex;
    Implementations implementations ORBINEL_GUARDED_BY(mutex);
};

DelegateClass::DelegateClass(std::string name) : state_(std::make_unique<State>(std::move(name))) {}
DelegateClass::~DelegateClass() = default;

const std::string& DelegateClass::name() const noexcept { return state_->name; }

bool DelegateClass::addOperation(std::string_view operation, DelegateImplementation implementation) {
    auto added = std::make_shared<const DelegateImplementation>(std::move(implementation));
    const MutexLock lock(state_->mutex);
    return state_->implementations.try_emplace(std::string(operation), std::move(added)).second;
}

bool DelegateClass::exchangeImplementations(std::string_view one, std::string_view other) {
    const MutexLock lock(state_->mutex);
    const auto first = state_->implementations.find(one);
    const auto second = state_->implementations.find(other);
    if (first == state_->implementations.end() || second == state_->implementations.end()) return false;
    std::swap(first->second, second->second);
    return true;
}

bool DelegateClass::removeOperation(std::string_view operation) {
    State::Implementations::node_type removed;  // what it holds is let go of without the lock
    const MutexLock lock(state_->mutex);
    const auto found = state_->implementations.find(operation);
    if (found == state_->implementations.end()) return false;
    removed = state_->implementations.extract(found);
    return true;
}

bool DelegateClass::implements(std::string_view operation) const {
    const MutexLock lock(state_->mutex);
    return state_->implementations.find(operation) != state_->implementations.end();
}

std::shared_ptr<const DelegateImplementation> DelegateClass::implementation(std::string_view operation) const {
    const MutexLock lock(state_->mutex);
    const auto found = state_->implementations.find(operation);
    return found != state_->implementations.end() ? found->second : nullptr;
}

// --- Delegate ---

Delegate::Delegate(std::shared_ptr<DelegateClass> type) : type_(std::move(type)) {}
Delegate::~Delegate() = default;

DelegateResult Delegate::perform(std::string_view operation, const DelegateArguments& arguments) {
    const auto implementation = type_->implementation(operation);
    if (implementation == nullptr || !*implementation) return std::nullopt;
    return (*implementation)(*this, arguments);
}

}  // namespace orbinel::platform
