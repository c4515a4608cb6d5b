#include "orbinel/headless/headless_device.hpp"

#include <array>
#include <cstdio>

#include "base/mutex.hpp"

namespace orbinel::headless {

namespace {

platform::DeviceFacts plausiblePhone() {
    platform::DeviceFacts facts;
    facts.machine = "HeadlessPhone1,1";
    facts.modelName = "Phone";
    facts.osVersion = "16.4.1";
    facts.preferredLanguage = "en-GB";
    facts.timezone = "UTC";
    facts.vendorIdentifier = "5E0C2A64-7B1D-4C9F-8A3E-1F2D3C4B5A69";
    facts.advertisingIdentifier = "9B7F4E21-3D6A-4B58-A1C0-6E5D4F3C2B1A";
    facts.carrier = "Headless Mobile";
    facts.battery = 80;
    facts.screen = platform::ScreenFacts{390, 844, 3};
    facts.safeArea = platform::SafeArea{47, 34};
    facts.connection = platform::Connection::wifi;
    return facts;
}

/// One step of SplitMix64: neighbouring numbers in, unrelated numbers out.
std::uint64_t scrambled(std::uint64_t number) noexcept {
    number += 0x9E3779B97F4A7C15;
    number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9;
    number = (number ^ (number >> 27)) * 0x94D049BB133111EB;
    return number ^ (number >> 31);
}

std::string uuidText(std::uint64_t high, std::uint64_t low) {
    constexpr std::uint64_t version4 = 0x4000;
    constexpr std::uint64_t variant = 0x8000;
    std::array<char, 37> text{};
    std::snprintf(text.data(), text.size(), "%08X-%04X-%04X-%04X-%012llX", static_cast<unsigned>(high >> 32),
                  static_cast<unsigned>((high >> 16) & 0xFFFF), static_cast<unsigned>((high & 0x0FFF) | version4),
                  static_cast<unsigned>(((low >> 48) & 0x3FFF) | variant),
                  static_cast<unsigned long long>(low & 0xFFFF'FFFF'FFFF));
    return text.data();
}

}  // namespace

struct HeadlessDevice::State {
    explicit State(std::uint64_t s) : seed(s) {}

    const std::uint64_t seed;
    Mutex mutex;
    std::shared_ptr<const platform::DeviceFacts> facts ORBINEL_GUARDED_BY(mutex) =
        std::make_shared<const platform::DeviceFacts>(plausiblePhone());
    std::uint64_t uuidsMade ORBINEL_GUARDED_BY(mutex) = 0;
};

HeadlessDevice::HeadlessDevice(std::uint64_t seed) : state_(std::make_unique<State>(seed)) {}
HeadlessDevice::~HeadlessDevice() = default;

void HeadlessDevice::change(const std::function<void(platform::DeviceFacts&)>& change) {
    const MutexLock lock(state_->mutex);
    auto changed = std::make_shared<platform::DeviceFacts>(*state_->facts);
    change(*changed);
    state_->facts = std::move(changed);
}

std::shared_ptr<const platform::DeviceFacts> HeadlessDevice::facts() const noexcept {
    const MutexLock lock(state_->mutex);
    return state_->facts;
}

std::string HeadlessDevice::makeUuid() noexcept {
    const MutexLock lock(state_->mutex);
    const auto number = scrambled(state_->seed) + 2 * state_->uuidsMade++;
    return uuidText(scrambled(number), scrambled(number + 1));
}

}  // namespace orbinel::headless
