#pragma once

#include <memory>
#include <string>

#include "orbinel/platform/scheduler.hpp"

struct _GTimeZone;

namespace orbinel::hosts {

/// A time zone of the system's zone database.
///
/// Threads: may be shared; nothing changes after construction.
class GlibTimeZone {
public:
    /// The zone of that IANA name, such as "Europe/Istanbul"; UTC where there is no such zone.
    explicit GlibTimeZone(const std::string& name);

    /// The machine's own zone, as it is set now.
    [[nodiscard]] static GlibTimeZone machine();

    /// The moment in this zone, held within the years 1 to 9999; NaN counts as 0. Fractions of a millisecond are
    /// dropped once the moment has been read to the microsecond, so that …30.257, which no double holds exactly, has
    /// 257 milliseconds.
    [[nodiscard]] platform::LocalTime localTime(double secondsSince1970) const noexcept;

private:
    explicit GlibTimeZone(_GTimeZone* zone);

    std::shared_ptr<_GTimeZone> zone_;
};

}  // namespace orbinel::hosts
