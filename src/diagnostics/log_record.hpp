#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/record_mapping.hpp"
#include "base/reports.hpp"
#include "session/helper.hpp"
#include "session/session.hpp"
#include "user/device_attributes.hpp"
#include "user/identity.hpp"

namespace orbinel {

/// One diagnostic record as it is kept until it is sent: what happened, and where and when.
struct OrbinelLog {
    /// Who knows where the library runs.
    struct Sources {
        OrbinelHelper& helper;
        OrbinelSession& session;
        OrbinelIdentity& identity;
        OrbinelDeviceAttributes& device;
    };

    /// Takes over what was reported. The attributes keep only what JSON can hold inside a batch, so that no value of
    /// theirs costs the batch.
    explicit OrbinelLog(DiagnosticRecord record);

    /// Adds where and when. May throw, and leaves the record as far as it was filled.
    ///
    /// Called on whatever thread reports, which may hold the lock that keeps session stops apart. What it asks takes
    /// only locks of its own, and nothing reports or calls out under those: the session record's, the identity's and
    /// the helper's mirrors', the stores' and the platform's facts.
    void fill(const Sources& sources);

    [[nodiscard]] std::string_view getLogType() const noexcept { return textOf(logType); }
    [[nodiscard]] std::string_view getLogLevel() const noexcept { return textOf(logLevel); }

    LogType logType;
    std::string message;
    std::optional<Dictionary> customAttributes;
    LogLevel logLevel;
    std::string sessionId;  // the batch's: empty until then
    std::string_view platform = OrbinelDeviceAttributes::getPlatform();
    std::string sdkVersion;
    std::optional<std::string> orbinelId;
    std::optional<std::string> udid;
    std::optional<std::string> freshUdid;
    std::optional<std::string> appVersion;
    std::optional<std::string> osVersion;
    std::string partnerName;
    std::int32_t timestamp = 0;  // seconds since 1970
};

/// What is absent travels as the empty text.
struct AbsentAsEmptyText {
    template <typename Content>
    static Value toValue(Content content) {
        auto value = PlainTransformer::toValue(std::move(content));
        return value.isAbsent() ? Value("") : std::move(value);
    }
};

/// Types and levels travel under their names.
struct NamedByText {
    template <typename Named>
    static Value toValue(Named named) {
        return textOf(named);
    }
};

/// How a record travels inside a batch.
template <>
struct RecordFields<OrbinelLog> {
    using R = OrbinelLog;
    static constexpr auto fields = std::tuple{
        recordField<NamedByText>("log_type", &R::logType),
        recordField("message", &R::message),
        recordField<AbsentAsEmptyText>("custom_attributes", &R::customAttributes),
        recordField<NamedByText>("log_level", &R::logLevel),
        recordField("session_id", &R::sessionId),
        recordField("platform", &R::platform),
        recordField("sdk_version", &R::sdkVersion),
        recordField<AbsentAsEmptyText>("orbinel_id", &R::orbinelId),
        recordField<AbsentAsEmptyText>("udid", &R::udid),
        recordField<AbsentAsEmptyText>("fresh_udid", &R::freshUdid),
        recordField<AbsentAsEmptyText>("app_version", &R::appVersion),
        recordField<AbsentAsEmptyText>("os_version", &R::osVersion),
        recordField("partner_name", &R::partnerName),
        recordField("timestamp", &R::timestamp),
    };
};

}  // namespace orbinel
