#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "base/lifetime.hpp"
#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "commerce/recommendation_attribution.hpp"
#include "events/event_recorder.hpp"
#include "orbinel/optional_text.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "orbinel/product.hpp"
#include "personalisation/recommended_ids.hpp"
#include "session/helper.hpp"
#include "session/session.hpp"

namespace orbinel {

/// Attributes what a person does to the recommendations: that one was shown, that a product in it was clicked, and that
/// a product clicked before was put into the cart or bought. Each is written into the session's record and recorded as
/// an event; events are built on the main queue, in order and never inside a call.
///
/// Clicks are remembered until the session's record is sent.
///
/// Threads: any.
class OrbinelRecommendationLogger final : public RecommendationAttribution {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        EventRecorder& recorder;
        RecommendedIds& recommendedIds;
        const Lifetime& lifetime;
        platform::Scheduler& scheduler;
    };

    explicit OrbinelRecommendationLogger(const Needs& needs);

    /// Forgets the clicks.
    void emptyRecommendationLogs() noexcept;

    /// An ID below 1 or an empty URL is dropped.
    void logViewWithRecommendationID(std::int32_t recommendationId, OptionalText requestUrl) noexcept;

    /// The application's click. Asks the gate; a product that is not valid, and the ID 0, are dropped.
    void clickSmartRecommendationProductWithID(std::int32_t recommendationId, const OrbinelProduct& product) noexcept;

    /// Dropped where no answer with products has come for the ID.
    void logClickWithRecommendationID(std::int32_t recommendationId, const OrbinelProduct& product) noexcept;

    // One log for each recommendation in which the product was clicked, in ascending order of their IDs.
    void logAddToCartWithProduct(const OrbinelProduct& product) noexcept override;
    void logPurchaseWithProduct(const OrbinelProduct& product) noexcept override;

    [[nodiscard]] bool recommendationIDsThatHasProductsContainsRecomendationID(
        std::int32_t recommendationId) const noexcept;
    [[nodiscard]] std::optional<std::set<std::int32_t>> getRecommendationIDsWithProduct(
        const OrbinelProduct& product) const noexcept;

private:
    void addToClickedProductsWithProduct(const OrbinelProduct& product, std::int32_t recommendationId);
    void logForClickedProduct(std::string_view action, const OrbinelProduct& product);
    void logProduct(std::int32_t recommendationId, std::string_view action, const OrbinelProduct& product);
    void append(Dictionary log);
    void customEventFeederWithRecommendationID(std::int32_t recommendationId, std::string_view action,
                                               Dictionary parameters, OptionalText requestUrl);

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    EventRecorder& recorder_;
    RecommendedIds& recommendedIds_;
    const Lifetime& lifetime_;
    platform::Scheduler& scheduler_;

    mutable Mutex mutex_;
    std::map<std::string, std::set<std::int32_t>, std::less<>> clicked_ ORBINEL_GUARDED_BY(mutex_);  // by product ID
};

}  // namespace orbinel
