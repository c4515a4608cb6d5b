#include "orbinel/headless/headless_accelerometer.hpp"

#include <utility>

namespace orbinel::headless {

struct HeadlessAccelerometer::State {
    using Handler = std::function<void(const platform::AccelerationOrReason&)>;

    bool available = true;
    std::chrono::milliseconds interval{0};
    std::shared_ptr<const Handler> handler;  // of the one that was started last
};

HeadlessAccelerometer::HeadlessAccelerometer(std::shared_ptr<platform::Scheduler> scheduler)
    : scheduler_(std::move(scheduler)), state_(std::make_shared<State>()) {}
HeadlessAccelerometer::~HeadlessAccelerometer() = default;

void HeadlessAccelerometer::setAvailable(bool available) { state_->available = available; }

void HeadlessAccelerometer::sample(double x, double y, double z) { deliver(platform::Acceleration{x, y, z}); }

void HeadlessAccelerometer::fail(const std::string& reason) { deliver(reason); }

void HeadlessAccelerometer::deliver(platform::AccelerationOrReason sample) {
    scheduler_->postMain([weak = std::weak_ptr(state_), sample = std::move(sample)] {
        const auto state = weak.lock();
        const auto handler = state != nullptr ? state->handler : nullptr;
        if (handler != nullptr) (*handler)(sample);
    });
}

bool HeadlessAccelerometer::isStarted() const { return state_->handler != nullptr; }

std::chrono::milliseconds HeadlessAccelerometer::interval() const { return state_->interval; }

bool HeadlessAccelerometer::isAvailable() const noexcept { return state_->available; }

platform::Ticket HeadlessAccelerometer::start(
    std::chrono::milliseconds interval, std::function<void(const platform::AccelerationOrReason&)> handler) noexcept {
    const auto started = std::make_shared<const State::Handler>(std::move(handler));
    state_->interval = interval;
    state_->handler = started;
    return platform::Ticket([weak = std::weak_ptr(state_), started] {
        const auto state = weak.lock();
        if (state != nullptr && state->handler == started) state->handler.reset();
    });
}

}  // namespace orbinel::headless
