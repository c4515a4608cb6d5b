#include "core/pending_features.hpp"

#include "base/value_text.hpp"

namespace orbinel {

void PendingFeatures::inappToMemory(const Array& inapps) {
    const auto kept = campaigns_.add(inapps);
    reports_.note([&] { return std::to_string(kept) + " in-app campaigns arrived; nothing shows them yet."; });
}

void PendingFeatures::handlePushLogWithUserInfo(const Dictionary& userInfo) {
    if (!userInfo.empty()) {
        reports_.note([&] { return "Nothing logs pushes yet: " + textOf(userInfo); });
    }
}

}  // namespace orbinel
