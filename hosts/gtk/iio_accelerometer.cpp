#include "hosts/gtk/iio_accelerometer.hpp"

#include <atomic>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace orbinel::hosts {

namespace {

using platform::Acceleration;
using platform::AccelerationOrReason;

constexpr double standardGravity = 9.80665;  // m/s²; the kernel's scale leads to m/s²

std::optional<double> numberIn(const std::filesystem::path& file) {
    std::ifstream stream(file);
    stream.imbue(std::locale::classic());
    double number = 0;
    if (!(stream >> number)) return std::nullopt;
    return number;
}

/// A factor or offset of one axis, which may stand for all of them.
double calibration(const std::filesystem::path& device, const std::string& axis, const std::string& name,
                   double otherwise) {
    if (const auto own = numberIn(device / ("in_accel_" + axis + "_" + name))) return *own;
    return numberIn(device / ("in_accel_" + name)).value_or(otherwise);
}

std::optional<double> axisInG(const std::filesystem::path& device, const std::string& axis) {
    const auto raw = numberIn(device / ("in_accel_" + axis + "_raw"));
    if (!raw) return std::nullopt;
    return (*raw + calibration(device, axis, "offset", 0)) * calibration(device, axis, "scale", 1) / standardGravity;
}

AccelerationOrReason sampleOf(const std::filesystem::path& device) {
    const auto x = axisInG(device, "x");
    const auto y = axisInG(device, "y");
    const auto z = axisInG(device, "z");
    if (!x || !y || !z) return "The accelerometer cannot be read at " + device.string() + ".";
    return Acceleration{*x, *y, *z};
}

}  // namespace

/// The device, once it has been found: the path is written before the flag, and then only read.
struct IioAccelerometer::Sensor {
    std::filesystem::path device;
    std::atomic<bool> found{false};

    void find(const std::filesystem::path& devices) {
        std::error_code unreadable;
        for (std::filesystem::directory_iterator entry(devices, unreadable), end; !unreadable && entry != end;
             entry.increment(unreadable)) {
            if (!axisInG(entry->path(), "x")) continue;
            device = entry->path();
            found = true;
            return;
        }
    }
};

namespace {

/// One listener, until its ticket is gone.
struct Listening {
    std::function<void(const AccelerationOrReason&)> handler;
    std::atomic<bool> wanted{true};
    std::atomic<bool> reading{false};  // a slow device is not asked again meanwhile
    platform::Ticket timer;
};

}  // namespace

IioAccelerometer::IioAccelerometer(std::shared_ptr<platform::Scheduler> scheduler, const std::filesystem::path& devices)
    : scheduler_(std::move(scheduler)), sensor_(std::make_shared<Sensor>()) {
    scheduler_->postGlobal([sensor = sensor_, devices] { sensor->find(devices); });
}

bool IioAccelerometer::isAvailable() const noexcept { return sensor_->found; }

platform::Ticket IioAccelerometer::start(std::chrono::milliseconds interval,
                                         std::function<void(const AccelerationOrReason&)> handler) noexcept {
    if (!isAvailable()) return {};
    auto listening = std::make_shared<Listening>();
    listening->handler = std::move(handler);
    const auto deliver = [](const std::shared_ptr<Listening>& to, const AccelerationOrReason& sample) {
        to->reading = false;
        if (to->wanted) to->handler(sample);
    };
    listening->timer = scheduler_->repeatOnMain(
        interval, [scheduler = std::weak_ptr(scheduler_), weak = std::weak_ptr(listening), sensor = sensor_, deliver] {
            const auto to = weak.lock();
            const auto queues = scheduler.lock();
            if (to == nullptr || queues == nullptr || to->reading.exchange(true)) return;
            queues->postGlobal([scheduler, to, sensor, deliver] {
                const auto back = scheduler.lock();
                if (back == nullptr) return;
                back->postMain([to, sample = sampleOf(sensor->device), deliver] { deliver(to, sample); });
            });
        });
    return platform::Ticket([listening] {
        listening->wanted = false;
        listening->timer.cancel();
    });
}

}  // namespace orbinel::hosts
