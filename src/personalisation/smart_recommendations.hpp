#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "base/ticket_box.hpp"
#include "commerce/product_creation.hpp"
#include "orbinel/optional_text.hpp"
#include "orbinel/platform/http.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/product.hpp"
#include "personalisation/recommendation_logger.hpp"
#include "personalisation/recommended_ids.hpp"
#include "session/collaborators.hpp"
#include "session/helper.hpp"
#include "session/session.hpp"

namespace orbinel {

/// Products that the vendor recommends: asks the address that the session start gave for a recommendation, and hands
/// the answer to the application as it is.
///
/// The application's callback runs at most once: with the answer, on the network thread, or at once with an empty
/// dictionary where there is no address for the ID. A request that fails in any way does not call it. Requests that are
/// not answered within 2 seconds have failed: a recommendation that comes later is of no use to its screen.
///
/// Threads: any. The addresses live in the application's store, which keeps them in memory.
class OrbinelRecommendation final : public SessionRecommendations {
public:
    using Callback = std::function<void(const Dictionary&)>;

    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        ProductCreation& productCreation;
        RecommendedIds& recommendedIds;
        OrbinelRecommendationLogger& logger;
        const Lifetime& lifetime;
        platform::Http& http;
        const platform::Json& json;
    };

    explicit OrbinelRecommendation(const Needs& needs);

    // --- What an application may ask for. Each asks the gate. Arguments that are not acceptable are told to the
    // wizard.

    /// Locale and currency must have a length.
    void getSmartRecommendationWithID(std::int32_t recommendationId, OptionalText locale, OptionalText currency,
                                      Callback smartRecommendation) noexcept;
    /// For a valid product, in its own currency. The locale must have a length.
    void getSmartRecommendationWithProduct(const OrbinelProduct& product, std::int32_t recommendationId,
                                           OptionalText locale, Callback smartRecommendation) noexcept;
    /// For the first three texts of a length among the IDs; there must be one. Locale and currency must have a length.
    void getSmartRecommendationWithProductIDs(const Array& productIds, std::int32_t recommendationId,
                                              OptionalText locale, OptionalText currency,
                                              Callback smartRecommendation) noexcept;

    // --- For the session ---

    void storeEndpoints(const Dictionary& endpoints) noexcept override;
    void clearEndpoints() noexcept override;
    void emptyRecommendationLogs() noexcept override { logger_.emptyRecommendationLogs(); }

    /// Ends every request; called when the library ends.
    void cancelAll() { requests_.cancelAll(); }

    /// The finished address; empty where there is none for the ID. `product` may be null.
    [[nodiscard]] std::string getRecommendationEndpoint(std::int32_t recommendationId, std::string_view locale,
                                                        std::string_view currency,
                                                        const OrbinelProduct* product) const noexcept;

    /// Whether there is at least one element under "data".
    [[nodiscard]] bool areThereProductsInSmartRecommendations(const Dictionary& answer) const noexcept;

private:
    using Success = std::function<void(const Dictionary&)>;

    template <std::invocable MakeArguments>
    void feedArguments(std::string_view method, std::string_view warning, MakeArguments&& make) noexcept;
    [[nodiscard]] Dictionary getRawEndpoints() const;
    void getSmartRecommendation(std::int32_t recommendationId, std::string_view locale, const OrbinelProduct* product,
                                std::string_view currency, Callback smartRecommendation) noexcept;
    void handleAnswer(std::int32_t recommendationId, const std::string& url, const Dictionary& answer,
                      const Callback& smartRecommendation);
    void makeRecommendationRequest(const std::string& url, Success success) noexcept;
    void complete(const platform::HttpOutcome& outcome, const Success& success);
    void decode(std::string_view body, const Success& success);
    void feedError(std::string_view error) noexcept;

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    ProductCreation& productCreation_;
    RecommendedIds& recommendedIds_;
    OrbinelRecommendationLogger& logger_;
    const Lifetime& lifetime_;
    platform::Http& http_;
    const platform::Json& json_;
    TicketBox requests_;
};

}  // namespace orbinel
