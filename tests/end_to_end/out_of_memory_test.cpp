#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>

#include "orbinel/headless/headless_host.hpp"
#include "orbinel/orbinel.hpp"
#include "platform/forwarding_scheduler.hpp"

namespace {

// Of this thread: how many allocations succeed until one fails; none fails while it is negative.
thread_local long untilFailure = -1;

void* allocate(std::size_t size) {
    if (untilFailure >= 0 && untilFailure-- == 0) throw std::bad_alloc();
    if (void* memory = std::malloc(size > 0 ? size : 1)) return memory;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace orbinel::testing {

namespace {

/// Hands work over with memory that is set aside for it: what a platform does without any is its own affair.
class ReservedMemory {
public:
    ReservedMemory() : untilFailure_(std::exchange(untilFailure, -1)) {}
    ~ReservedMemory() { untilFailure = untilFailure_; }
    ReservedMemory(const ReservedMemory&) = delete;
    ReservedMemory& operator=(const ReservedMemory&) = delete;

private:
    const long untilFailure_;
};

class ReservingScheduler final : public platform::ForwardingScheduler {
public:
    using ForwardingScheduler::ForwardingScheduler;

    void postMain(platform::Task task) noexcept override {
        const ReservedMemory reserved;
        target_->postMain(std::move(task));
    }
    void postGlobal(platform::Task task) noexcept override {
        const ReservedMemory reserved;
        target_->postGlobal(std::move(task));
    }
};

// Whichever allocation fails: who waits for the erasure is told, and the library can be used.
TEST(OutOfMemory, AnErasureIsToldTheEndOnce) {
    bool failed = true;
    for (long allocation = 0; failed; ++allocation) {
        headless::HeadlessHost host(1'767'225'600);
        auto services = host.services();
        services.scheduler = std::make_shared<ReservingScheduler>(services.scheduler);
        ASSERT_TRUE(start(services));
        Orbinel::initWithLaunchOptions(std::nullopt, "acme", "group.acme", "https://api.test");
        int told = 0;
        std::function<void(const std::optional<std::string>&)> completion = [&](const auto&) { ++told; };

        untilFailure = allocation;
        Orbinel::eraseStoredDataWithCompletionHandler(std::move(completion));
        failed = untilFailure < 0;
        untilFailure = -1;
        host.settle();

        EXPECT_EQ(told, 1) << allocation;
        Orbinel::initWithLaunchOptions(std::nullopt, "acme", "group.acme", "https://api.test");
        EXPECT_TRUE(Orbinel::getOrbinelID().has_value()) << allocation;
        shutdown();
        host.settle();
    }
}

}  // namespace

}  // namespace orbinel::testing
