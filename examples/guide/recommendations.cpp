#include "guide.hpp"

using orbinel::Dictionary;
using orbinel::Orbinel;

namespace guide {

std::vector<std::string> productIdsOf(const Dictionary& answer) {
    std::vector<std::string> ids;
    const auto* products = answer["data"].ifArray();
    if (products == nullptr) return ids;  // the answer comes from outside: nothing in it is certain
    for (const auto& product : *products) {
        if (const auto* fields = product.ifDictionary()) ids.push_back((*fields)["product_id"].stringOrEmpty());
    }
    return ids;
}

void showRecommendations(std::int32_t campaign) {
    Orbinel::getSmartRecommendationWithID(campaign, "en_US", "EUR", [campaign](const Dictionary& answer) {
        const auto ids = productIdsOf(answer);  // on a background thread: hand it to your own main thread
        if (ids.empty()) return;
        const auto chosen = Orbinel::createNewProductWithID(ids.front(), "Running shoe", {"Sport", "Shoes"},
                                                            "https://shop.example/shoe-1.jpg", 59.9, "EUR");
        Orbinel::clickSmartRecommendationProductWithID(campaign, chosen);  // when the person chooses it
    });
}

}  // namespace guide
