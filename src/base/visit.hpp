#pragma once

#include <memory>
#include <optional>
#include <utility>

#include "base/lifetime.hpp"

namespace orbinel {

/// Holds a part of the world for the length of one call from outside, so that the end of the world waits for the call;
/// holds nothing where the world does not run.
template <typename Target>
class Visit {
public:
    explicit Visit(std::shared_ptr<Target> target) : target_(std::move(target)) {
        if (target_ == nullptr) return;
        entry_.emplace(target_->lifetime());
        if (!*entry_) target_.reset();
    }

    explicit operator bool() const noexcept { return target_ != nullptr; }
    Target* operator->() const noexcept { return target_.get(); }
    Target& operator*() const noexcept { return *target_; }
    [[nodiscard]] const std::shared_ptr<Target>& target() const noexcept { return target_; }

private:
    std::optional<Lifetime::Entry> entry_;  // the first member, to be the last one to go
    std::shared_ptr<Target> target_;
};

}  // namespace orbinel
