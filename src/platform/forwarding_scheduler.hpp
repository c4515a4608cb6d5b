#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/scheduler.hpp"

namespace orbinel::platform {

/// Hands every call on to another scheduler; derive from it to change one method.
class ForwardingScheduler : public Scheduler {
public:
    explicit ForwardingScheduler(std::shared_ptr<Scheduler> target) : target_(std::move(target)) {}

    double now() const noexcept override { return target_->now(); }
    LocalTime localTime(double secondsSince1970) const noexcept override {
        return target_->localTime(secondsSince1970);
    }
    bool isMain() const noexcept override { return target_->isMain(); }
    void postMain(Task task) noexcept override { target_->postMain(std::move(task)); }
    Ticket postMainAfter(std::chrono::milliseconds delay, Task task) noexcept override {
        return target_->postMainAfter(delay, std::move(task));
    }
    void postGlobal(Task task) noexcept override { target_->postGlobal(std::move(task)); }
    Ticket postGlobalAfter(std::chrono::milliseconds delay, Task task) noexcept override {
        return target_->postGlobalAfter(delay, std::move(task));
    }
    Ticket repeatOnMain(std::chrono::milliseconds interval, Task task) noexcept override {
        return target_->repeatOnMain(interval, std::move(task));
    }

protected:
    const std::shared_ptr<Scheduler> target_;
};

}  // namespace orbinel::platform
