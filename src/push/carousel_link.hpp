#pragma once

#include "base/reports.hpp"
#include "orbinel/value.hpp"
#include "session/helper.hpp"

namespace orbinel {

/// The item of a carousel push that a person picked in the notification itself: the application's notification
/// extension leaves its links in the app group, and the moment of the choice.
///
/// Threads: any. Reads the app group, which may wait for the disk.
class CarouselLink {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
    };

    explicit CarouselLink(const Needs& needs) : reports_(needs.reports), helper_(needs.helper) {}

    /// The links of an item that was picked for this push, at most 5 seconds ago; empty where there are none. What was
    /// picked earlier belongs to another push, and is forgotten.
    [[nodiscard]] Dictionary getAdvancedPushDeepLink(const Dictionary& pushInfo) noexcept;

    /// Forgets what was picked.
    void flushClickedDeepLink() noexcept;

private:
    [[nodiscard]] bool isStale(const Value& timestamp) const;

    Reports& reports_;
    OrbinelHelper& helper_;
};

}  // namespace orbinel
