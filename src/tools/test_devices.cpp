#include "tools/test_devices.hpp"

#include "base/guard.hpp"
#include "session/stored_keys.hpp"

namespace orbinel {

namespace {

constexpr std::string_view yes = "1";

}  // namespace

TestDevices::TestDevices(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      session_(needs.session),
      endpoints_(needs.endpoints),
      sender_(needs.sender) {}

void TestDevices::setTestDeviceToken(std::optional<std::string> token) noexcept {
    const MutexLock lock(mutex_);
    testDeviceToken_.swap(token);
}

std::optional<std::string> TestDevices::testDeviceToken() const noexcept {
    return guarded(reports_, "-[OrbinelHelper testDeviceToken]", std::optional<std::string>(), [&] {
        const MutexLock lock(mutex_);
        return testDeviceToken_;
    });
}

void TestDevices::addWaitingTestDevice() noexcept {
    if (const auto token = testDeviceToken()) addTestDevice(*token);
}

void TestDevices::addTestDevice(const std::string& token) noexcept {
    guarded(reports_, "-[OrbinelHelper addTestDevice:]", [&] {
        markDeviceAsDebug();
        Dictionary device{{"udid", helper_.getUdid()}, {"partner_name", session_.partnerName()}, {"token", token}};
        device.eraseIf([](const Dictionary::Entry& entry) { return entry.second.isAbsent(); });
        sender_.sendRequest(std::move(device), endpoints_.getAddTestDeviceEndpoint(), [](const Value&) {});
        forgetToken(token);
    });
}

/// Another link may have left another token meanwhile: that one stays.
void TestDevices::forgetToken(const std::string& token) {
    const MutexLock lock(mutex_);
    if (testDeviceToken_ == token) testDeviceToken_.reset();
}

void TestDevices::markDeviceAsDebug() noexcept {
    guarded(reports_, "-[OrbinelHelper markDeviceAsDebug]", [&] {
        helper_.standardStore().set(keys::debugCheck, yes);
        helper_.standardStore().synchronize();
        mark_ = Mark::present;
    });
}

bool TestDevices::isTestDevice() const noexcept {
    const auto known = mark_.load(std::memory_order_relaxed);
    if (known != Mark::unread) return known == Mark::present;
    const auto read =
        helper_.standardStore().value(keys::debugCheck).stringOrEmpty() == yes ? Mark::present : Mark::absent;
    auto unread = Mark::unread;  // unless the device was marked between the look at the store and this
    mark_.compare_exchange_strong(unread, read);
    return mark_ == Mark::present;
}

}  // namespace orbinel
