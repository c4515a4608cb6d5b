#include "core/pending_features.hpp"

#include "base/value_text.hpp"

namespace orbinel {

void PendingFeatures::noteArrived(std::string_view what, std::size_t count) {
    reports_.note([&] { return std::to_string(count) + " " + std::string(what) + " arrived; nothing uses them yet."; });
}

void PendingFeatures::inappToMemory(const Array& inapps) { noteArrived("in-app campaigns", inapps.size()); }

void PendingFeatures::insertContentCampaigns(const Value& variables, const Value&, const Value&) {
    const auto* list = variables.ifArray();
    noteArrived("content variables", list != nullptr ? list->size() : 0);
}

void PendingFeatures::storeEndpoints(const Dictionary& endpoints) {
    noteArrived("recommendation endpoints", endpoints.size());
}

void PendingFeatures::setIsLoggingEnabled(bool enabled) {
    if (enabled) reports_.note("The backend asks for diagnostic records; nothing sends them yet.");
}

void PendingFeatures::saveFailedGdprPost(bool consent) {
    reports_.note(consent ? "A consent (given) did not reach the backend; nothing keeps it yet."
                          : "A consent (withheld) did not reach the backend; nothing keeps it yet.");
}

void PendingFeatures::handlePushLogWithUserInfo(const Dictionary& userInfo) {
    if (!userInfo.empty()) {
        reports_.note([&] { return "Nothing logs pushes yet: " + textOf(userInfo); });
    }
}

}  // namespace orbinel
