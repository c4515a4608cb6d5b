#pragma once

#include <concepts>
#include <functional>
#include <memory>
#include <utility>

namespace orbinel {

/// A target that is held weakly and an action to perform on it. Once the target is gone, nothing happens any more.
///
/// The action is a member function of the target, or a function that takes the target:
///
///     TargetAction<const Dictionary&>(std::weak_ptr(controller), &Controller::onCallback);
///     TargetAction<const Dictionary&>(std::weak_ptr(controller), [](Controller& c, const Dictionary& d) { … });
template <typename... Arguments>
class TargetAction {
public:
    TargetAction() = default;

    template <typename Target, typename Action>
    requires std::invocable<Action&, Target&, Arguments...> TargetAction(std::weak_ptr<Target> target, Action action)
        : target_(std::move(target)),
          perform_(
              std::make_shared<Perform>([action = std::move(action)](void* locked, Arguments... arguments) mutable {
                  std::invoke(action, *static_cast<Target*>(locked), std::forward<Arguments>(arguments)...);
              })) {}

    /// Whether there is a target, and it still lives.
    [[nodiscard]] bool isAlive() const noexcept { return perform_ != nullptr && !target_.expired(); }

    /// The target, for telling targets apart; not for use.
    [[nodiscard]] const std::weak_ptr<void>& target() const noexcept { return target_; }

    /// Performs the action where the target still lives, and keeps the target alive meanwhile.
    void perform(Arguments... arguments) const {
        if (!perform_) return;
        if (const auto locked = target_.lock()) (*perform_)(locked.get(), std::forward<Arguments>(arguments)...);
    }

private:
    using Perform = std::function<void(void*, Arguments...)>;

    std::weak_ptr<void> target_;
    std::shared_ptr<Perform> perform_;  // one action for all copies, which cost nothing of the application's
};

}  // namespace orbinel
