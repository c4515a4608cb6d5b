#pragma once

#include <rapidjson/document.h>

#include <optional>
#include <string>
#include <string_view>

#include "apps/orbinel/backend/bounded.hpp"
#include "apps/orbinel/backend/inspectable.hpp"
#include "base/mutex.hpp"

namespace orbinel::tool {

struct Consent {
    std::optional<bool> gdpr;
    std::optional<bool> mobile;
};

/// The device that a consent request is about, its "target"/"udid"; empty where there is none that can be used.
[[nodiscard]] std::string deviceOf(const rapidjson::Value& payload);
/// The text, empty where it is too long for anybody's device.
[[nodiscard]] std::string usableDevice(std::string udid);

/// What each device last posted about its consents, for the last 10,000 devices. Threads: any.
class Consents final : public Inspectable {
public:
    /// Takes over what the payload says; the consent that it does not speak of stays as it is.
    void set(const std::string& device, const rapidjson::Value& payload);

    /// What the device posted.
    [[nodiscard]] Consent get(const std::string& device);

    [[nodiscard]] std::string asJson() const override;
    void clear() override;

private:
    mutable Mutex mutex_;
    BoundedMap<Consent> byDevice_ ORBINEL_GUARDED_BY(mutex_){10'000};
};

/// The answer about a device: `neutralAnswer` with what the device posted in place of its two members. A neutral answer
/// that is no object stays as it is.
[[nodiscard]] std::string consentAnswer(const Consent& posted, const std::string& neutralAnswer);

}  // namespace orbinel::tool
