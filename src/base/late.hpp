#pragma once

#include <atomic>
#include <cassert>

namespace orbinel {

/// A reference that is bound once its target exists, and unbound before the target goes.
///
/// For the few places where two objects need each other: the later one is bound when both stand, by their owner.
/// Any thread may follow the reference; binding and unbinding are the owner's.
template <typename T>
class Late {
public:
    void bind(T& target) noexcept {
        assert(target_.load() == nullptr && "bound twice");
        target_.store(&target, std::memory_order_release);
    }
    void unbind() noexcept { target_.store(nullptr, std::memory_order_release); }

    /// The target, or nullptr outside its time.
    [[nodiscard]] T* get() const noexcept { return target_.load(std::memory_order_acquire); }

    /// Only while bound.
    T* operator->() const noexcept {
        auto* target = get();
        assert(target != nullptr && "not bound");
        return target;
    }

    T& operator*() const noexcept { return *operator->(); }

private:
    std::atomic<T*> target_{nullptr};
};

}  // namespace orbinel
