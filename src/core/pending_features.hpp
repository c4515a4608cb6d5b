#pragma once

#include "base/reports.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// Stands in for the features that are not built yet, pushes and links: takes what a session hands them and tells the
/// development log. Every operation carries the name that its feature will give it.
class PendingFeatures {
public:
    explicit PendingFeatures(Reports& reports) : reports_(reports) {}

    void callUserNotificationCenterSwizzlers() {}
    void handlePushLogWithUserInfo(const Dictionary& userInfo);
    void setUserInfoProcessed(bool) {}
    void setForegroundPush(bool) {}
    void flushClickedDeepLink() {}
    void setPlaceholderLog() {}

private:
    Reports& reports_;
};

}  // namespace orbinel
