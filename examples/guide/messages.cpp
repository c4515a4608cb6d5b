#include "guide.hpp"

using orbinel::Dictionary;
using orbinel::Orbinel;

namespace guide {

void Engagement::onOrbinel(const Dictionary& what) {
    constexpr std::int64_t messageWasShown = 5;
    const auto* data = what["data"].ifDictionary();
    if (what["type"].integer() != messageWasShown || data == nullptr) return;
    shownMessages.push_back((*data)["inapp_id"].stringOrEmpty());
}

void listenForMessages(const std::shared_ptr<Engagement>& engagement) {
    Orbinel::registerOrbinelCallbackWithSelector(&Engagement::onOrbinel, std::weak_ptr(engagement));
}

void keepMessagesAwayDuringCheckout(bool atCheckout) {
    if (atCheckout) {
        Orbinel::disableInAppMessages();
    } else {
        Orbinel::enableInAppMessages();
    }
}

}  // namespace guide
