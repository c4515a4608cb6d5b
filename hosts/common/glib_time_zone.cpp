#include "hosts/common/glib_time_zone.hpp"

#include <glib.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace orbinel::hosts {

namespace {

using platform::LocalTime;

constexpr std::int64_t microsecondsPerSecond = 1'000'000;
constexpr std::int64_t firstSecond = -62'135'596'800;  // 0001-01-01T00:00:00Z
constexpr std::int64_t lastSecond = 253'402'300'799;   // 9999-12-31T23:59:59Z

constexpr LocalTime earliest{1, 1, 1, 0, 0, 0, 0};
constexpr LocalTime latest{9999, 12, 31, 23, 59, 59, 999};

struct Moment {
    std::int64_t second = 0;  // since 1970, rounded down
    int microsecond = 0;
};

Moment momentOf(double secondsSince1970) noexcept {
    if (std::isnan(secondsSince1970)) return {};
    const double held = std::clamp(secondsSince1970, static_cast<double>(firstSecond), lastSecond + 0.999'9);
    const double whole = std::floor(held);
    Moment moment{static_cast<std::int64_t>(whole), static_cast<int>(std::lround((held - whole) * 1e6))};
    if (moment.microsecond == microsecondsPerSecond) return {moment.second + 1, 0};
    return moment;
}

struct Unreference {
    void operator()(GDateTime* time) const noexcept { g_date_time_unref(time); }
};
using DateTime = std::unique_ptr<GDateTime, Unreference>;

}  // namespace

GlibTimeZone::GlibTimeZone(_GTimeZone* zone) : zone_(zone, &g_time_zone_unref) {}

GlibTimeZone::GlibTimeZone(const std::string& name) {
    auto* zone = g_time_zone_new_identifier(name.c_str());
    zone_.reset(zone != nullptr ? zone : g_time_zone_new_utc(), &g_time_zone_unref);
}

GlibTimeZone GlibTimeZone::machine() { return GlibTimeZone(g_time_zone_new_local()); }

LocalTime GlibTimeZone::localTime(double secondsSince1970) const noexcept {
    const auto moment = momentOf(secondsSince1970);
    const DateTime utc(g_date_time_new_from_unix_utc(moment.second));
    const DateTime local(utc ? g_date_time_to_timezone(utc.get(), zone_.get()) : nullptr);
    if (!local) return moment.second < 0 ? earliest : latest;  // the zone's offset leads out of the years
    return {g_date_time_get_year(local.get()),
            g_date_time_get_month(local.get()),
            g_date_time_get_day_of_month(local.get()),
            g_date_time_get_hour(local.get()),
            g_date_time_get_minute(local.get()),
            g_date_time_get_second(local.get()),
            moment.microsecond / 1000};
}

}  // namespace orbinel::hosts
