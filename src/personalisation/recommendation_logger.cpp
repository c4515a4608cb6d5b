#include "personalisation/recommendation_logger.hpp"

#include <algorithm>
#include <utility>

#include "base/guard.hpp"
#include "base/value_content.hpp"
#include "commerce/product_codes.hpp"
#include "events/data_types.hpp"

namespace orbinel {

namespace {

constexpr std::string_view recommendationLogEvent = "mobile_recommendation_log";

Dictionary logOf(std::int32_t recommendationId, std::string_view action) {
    return {{"recommendation_id", recommendationId}, {"action", action}};
}

void addProductAttributes(const OrbinelProduct& product, const Dictionary& summary, Dictionary& log) {
    log.set("product_id", product.getProductID());
    log.set("name", product.getName());
    log.set("price", product.getUnitPrice());
    log.set("taxonomy", makeArrayValid(product.getTaxonomy()));
    log.set("currency", product.getCurrency());
    log.set("image_url", product.getImageURL());
    const auto& groupCode = summary[product_code::GROUP_CODE];
    if (isPresent(groupCode)) log.set("groupcode", groupCode);
}

Dictionary productLogOf(std::int32_t recommendationId, std::string_view action, const OrbinelProduct& product,
                        const Dictionary& summary) {
    auto log = logOf(recommendationId, action);
    log.set("product", summary);
    addProductAttributes(product, summary, log);
    return log;
}

}  // namespace

OrbinelRecommendationLogger::OrbinelRecommendationLogger(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      session_(needs.session),
      recorder_(needs.recorder),
      recommendedIds_(needs.recommendedIds),
      lifetime_(needs.lifetime),
      scheduler_(needs.scheduler) {}

void OrbinelRecommendationLogger::emptyRecommendationLogs() noexcept {
    guarded(reports_, "-[OrbinelRecommendationLogger emptyRecommendationLogs]", [&] {
        const MutexLock lock(mutex_);
        clicked_.clear();
    });
}

// --- What happened ---

void OrbinelRecommendationLogger::logViewWithRecommendationID(std::int32_t recommendationId,
                                                              OptionalText requestUrl) noexcept {
    guarded(reports_, "-[OrbinelRecommendationLogger logViewWithRecommendationID:requestURL:]", [&] {
        constexpr std::string_view action = "view";
        if (requestUrl.view().empty() || recommendationId < 1) return;
        append(logOf(recommendationId, action));
        customEventFeederWithRecommendationID(recommendationId, action, {}, requestUrl);
    });
}

void OrbinelRecommendationLogger::clickSmartRecommendationProductWithID(std::int32_t recommendationId,
                                                                        const OrbinelProduct& product) noexcept {
    guarded(reports_, "+[Orbinel clickSmartRecommendationProductWithID:product:]", [&] {
        if (!helper_.shouldProceed() || !product.isProductValid() || recommendationId == 0) return;
        logClickWithRecommendationID(recommendationId, product);
    });
}

void OrbinelRecommendationLogger::logClickWithRecommendationID(std::int32_t recommendationId,
                                                               const OrbinelProduct& product) noexcept {
    guarded(reports_, {"logClickWithRecommendationID", DescriptionForm::nameOnly}, [&] {
        if (!recommendationIDsThatHasProductsContainsRecomendationID(recommendationId)) return;
        const auto summary = product.getProductSummary();
        append(productLogOf(recommendationId, "click", product, summary));
        addToClickedProductsWithProduct(product, recommendationId);
        customEventFeederWithRecommendationID(recommendationId, "click", summary, nullptr);
    });
}

void OrbinelRecommendationLogger::logAddToCartWithProduct(const OrbinelProduct& product) noexcept {
    guarded(reports_, "-[OrbinelRecommendationLogger logAddToCartWithProduct:]",
            [&] { logForClickedProduct("add_to_cart", product); });
}

void OrbinelRecommendationLogger::logPurchaseWithProduct(const OrbinelProduct& product) noexcept {
    guarded(reports_, "-[OrbinelRecommendationLogger logPurchaseWithProduct:]",
            [&] { logForClickedProduct("purchase", product); });
}

void OrbinelRecommendationLogger::logForClickedProduct(std::string_view action, const OrbinelProduct& product) {
    const auto recommendationIds = getRecommendationIDsWithProduct(product);
    if (!recommendationIds) return;  // never clicked
    for (const auto recommendationId : *recommendationIds) logProduct(recommendationId, action, product);
}

// --- The clicks ---

bool OrbinelRecommendationLogger::recommendationIDsThatHasProductsContainsRecomendationID(
    std::int32_t recommendationId) const noexcept {
    return guarded(reports_, {"recommendationIDsThatHasProductsContainsRecomendationID", DescriptionForm::nameOnly},
                   false, [&] {
                       const auto ids = recommendedIds_.getRecommendationIDsThatHasProducts();
                       return std::find(ids.begin(), ids.end(), recommendationId) != ids.end();
                   });
}

void OrbinelRecommendationLogger::addToClickedProductsWithProduct(const OrbinelProduct& product,
                                                                  std::int32_t recommendationId) {
    auto productId = product.getProductID();
    const MutexLock lock(mutex_);
    clicked_[std::move(productId)].insert(recommendationId);
}

std::optional<std::set<std::int32_t>> OrbinelRecommendationLogger::getRecommendationIDsWithProduct(
    const OrbinelProduct& product) const noexcept {
    using Ids = std::optional<std::set<std::int32_t>>;
    return guarded(reports_, "-[OrbinelRecommendationLogger getRecommendationIDsWithProduct:]", Ids(), [&] {
        const auto productId = product.getProductID();
        const MutexLock lock(mutex_);
        const auto known = clicked_.find(productId);
        return known != clicked_.end() ? Ids(known->second) : Ids();
    });
}

// --- Writing it down ---

void OrbinelRecommendationLogger::logProduct(std::int32_t recommendationId, std::string_view action,
                                             const OrbinelProduct& product) {
    auto summary = product.getProductSummary();
    append(productLogOf(recommendationId, action, product, summary));
    customEventFeederWithRecommendationID(recommendationId, action, std::move(summary), nullptr);
}

void OrbinelRecommendationLogger::append(Dictionary log) {
    session_.update([&](SessionRecord& session) { session.recommendation_logs.emplace_back(std::move(log)); });
}

void OrbinelRecommendationLogger::customEventFeederWithRecommendationID(std::int32_t recommendationId,
                                                                        std::string_view action, Dictionary parameters,
                                                                        OptionalText requestUrl) {
    parameters.set("recommendation_id", recommendationId);
    parameters.set("action", action);
    if (requestUrl.isPresent()) parameters.set("request_url", requestUrl.view());
    scheduler_.postMain(lifetime_.whileAlive([this, parameters = std::move(parameters)] {
        recorder_.recordInternalEvent(recommendationLogEvent, parameters);
    }));
}

}  // namespace orbinel
