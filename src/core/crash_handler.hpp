#pragma once

#include <string_view>

#include "base/reports.hpp"
#include "session/helper.hpp"
#include "session/session.hpp"
#include "user/device_attributes.hpp"

namespace orbinel {

/// Turns caught exceptions into reports for the integration wizard. Never throws.
class OrbinelCrashHandler final : public CrashReports {
public:
    struct Needs {
        Reports& reports;
        OrbinelSession& session;
        OrbinelDeviceAttributes& device;
    };

    explicit OrbinelCrashHandler(const Needs& needs);

    void sendError(std::string_view error, std::string_view description) noexcept override;

private:
    [[nodiscard]] Dictionary makeReport(std::string_view error, std::string_view description) const;

    Reports& reports_;
    OrbinelSession& session_;
    OrbinelDeviceAttributes& device_;
};

}  // namespace orbinel
