#include "diagnostics/log_record.hpp"

#include <utility>

#include "base/sanitize.hpp"

namespace orbinel {

namespace {

/// The payload, its list and the record stand around the attributes.
constexpr int depthOfAttributes = maximumValueDepth - 3;

}  // namespace

OrbinelLog::OrbinelLog(DiagnosticRecord record)
    : logType(record.type),
      message(std::move(record.message)),
      customAttributes(std::move(record.customAttributes)),
      logLevel(record.level) {
    if (customAttributes) sanitizeDictionary(*customAttributes, depthOfAttributes);
}

void OrbinelLog::fill(const Sources& sources) {
    sdkVersion = sources.device.getSDKVersion();
    orbinelId = sources.identity.getOrbinelID();
    udid = sources.device.getUdid();
    freshUdid = sources.device.getFreshUdid();
    appVersion = sources.device.getAppVersion();
    osVersion = sources.device.getOsVersion();
    partnerName = sources.session.partnerName();
    timestamp = sources.helper.getNowAsTimestamp();
}

}  // namespace orbinel
