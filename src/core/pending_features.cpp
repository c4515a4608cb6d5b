#include "core/pending_features.hpp"

#include "base/value_text.hpp"

namespace orbinel {

void PendingFeatures::handlePushLogWithUserInfo(const Dictionary& userInfo) {
    if (!userInfo.empty()) {
        reports_.note([&] { return "Nothing logs pushes yet: " + textOf(userInfo); });
    }
}

}  // namespace orbinel
