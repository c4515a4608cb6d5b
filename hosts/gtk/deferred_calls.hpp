#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace orbinel::hosts {

/// Calls that GLib's default main context makes at its next turn, in order. Destroying it drops what has not run.
///
/// Threads: main thread only. A call may destroy the object.
class DeferredCalls {
public:
    DeferredCalls() = default;
    ~DeferredCalls();
    DeferredCalls(const DeferredCalls&) = delete;
    DeferredCalls& operator=(const DeferredCalls&) = delete;

    void add(std::function<void()> call);
    [[nodiscard]] bool empty() const noexcept { return calls_.empty(); }

private:
    static int run(void* self) noexcept;

    std::vector<std::function<void()>> calls_;
    unsigned source_ = 0;
    const std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace orbinel::hosts
