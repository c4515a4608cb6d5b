#include "inapp/shake_detector.hpp"

#include <chrono>
#include <cmath>
#include <string>
#include <utility>

#include "base/guard.hpp"

namespace orbinel {

namespace {

constexpr std::chrono::milliseconds updateInterval{100};

bool isShake(const platform::Acceleration& acceleration) noexcept {
    constexpr double threshold = ShakeDetector::accelerationThreshold;
    return std::abs(acceleration.x) > threshold || std::abs(acceleration.y) > threshold ||
           std::abs(acceleration.z) > threshold;
}

}  // namespace

ShakeDetector::ShakeDetector(const Needs& needs)
    : reports_(needs.reports),
      lifetime_(needs.lifetime),
      scheduler_(needs.scheduler),
      mainThread_({needs.reports, needs.lifetime, needs.scheduler}),
      accelerometer_(needs.accelerometer) {}

void ShakeDetector::startObservingWithCallback(std::function<void()> callback) noexcept {
    guarded(reports_, "-[ShakeDetector startObservingWithCallback:]", [&] {
        if (observation_) return log(LogLevel::info, "Shake detector already initialized");
        if (!accelerometer_.isAvailable()) return log(LogLevel::error, "Accelerometer not found");
        start(std::move(callback));
        log(LogLevel::info, "Shake detector initialized");
    });
}

void ShakeDetector::start(std::function<void()> callback) {
    callback_ = std::move(callback);
    observation_ = accelerometer_.start(
        updateInterval, lifetime_.whileAlive([this](const platform::AccelerationOrReason& sample) { take(sample); }));
}

void ShakeDetector::stopObserving() noexcept {
    guarded(reports_, "-[ShakeDetector stopObserving]", [&] {
        if (!observation_) return log(LogLevel::info, "Shake detector already destroyed");
        observation_.reset();
        log(LogLevel::info, "Shake detector destroyed");
    });
}

void ShakeDetector::destroyShakeDetector() noexcept {
    mainThread_.run("-[OrbinelInapp destroyShakeDetector]", [this] { stopObserving(); });
}

void ShakeDetector::take(const platform::AccelerationOrReason& sample) {
    if (!observation_) return;
    if (const auto* reason = std::get_if<std::string>(&sample)) return log(LogLevel::error, *reason);
    if (!isShake(std::get<platform::Acceleration>(sample)) || !isFirstOfItsSecond()) return;
    if (const auto callback = callback_) callback();  // a copy: the callback may bring about a stop and a start
    log(LogLevel::info, "Shake detected");
}

bool ShakeDetector::isFirstOfItsSecond() {
    const double now = scheduler_.now();
    if (now - lastShakeTime_ < shakeThresholdTime) return false;
    lastShakeTime_ = now;
    return true;
}

}  // namespace orbinel
