#include "commerce/commerce_events.hpp"

#include <string>

namespace orbinel {

void CommerceEvents::tagEachValid(const std::vector<OrbinelProduct>& products, std::string_view eventName,
                                  std::string_view methodType) const {
    for (const auto& product : products) {
        if (!product.isProductValid()) continue;
        const auto summary = product.getProductSummary();
        tag(eventName, summary);
        feed(methodType, [&] { return summary; });
    }
}

void CommerceEvents::reportInvalid(const OrbinelProduct& product, LogType type, std::string_view operation) const {
    const auto message = "The product used for the " + std::string(operation) + " method is invalid.";
    reports_.log(type, LogLevel::info, message, [&] { return Dictionary{{"product_id", product.getProductID()}}; });
}

}  // namespace orbinel
