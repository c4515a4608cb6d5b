#include "personalisation/smart_recommendations.hpp"

#include <chrono>
#include <utility>

#include "base/guard.hpp"
#include "base/url.hpp"
#include "personalisation/recommendation_url.hpp"
#include "session/stored_keys.hpp"

namespace orbinel {

namespace {

namespace url_of = recommendation_url;

constexpr std::chrono::milliseconds requestTimeout{2000};
constexpr int statusOk = 200;
constexpr std::size_t mostProductIds = 3;

constexpr std::string_view ofId = "getSmartRecommendation";
constexpr std::string_view ofProduct = "getSmartRecommendationWithProduct";
constexpr std::string_view ofProductIds = "getSmartRecommendationWithProductIDs";

constexpr std::string_view valuesAreMissing = "All the parameters should have value.";
constexpr std::string_view valuesOrProductAreMissing =
    "All the parameters should have value and product should be valid.";

Dictionary argumentsOf(std::int32_t recommendationId, OptionalText locale, std::string_view further, Value value) {
    return {
        {"recommendationID", recommendationId}, {"locale", locale.view()}, {std::string(further), std::move(value)}};
}

/// The first few IDs of a length, joined with commas.
std::string joinedIds(const Array& productIds) {
    std::string joined;
    std::size_t taken = 0;
    for (const auto& productId : productIds) {
        const auto& text = productId.stringOrEmpty();
        if (text.empty()) continue;
        if (taken == mostProductIds) break;
        if (taken++ > 0) joined += ',';
        joined += text;
    }
    return joined;
}

std::size_t countOf(const Value& value) {
    if (const auto* array = value.ifArray()) return array->size();
    const auto* dictionary = value.ifDictionary();
    return dictionary != nullptr ? dictionary->size() : 0;
}

}  // namespace

OrbinelRecommendation::OrbinelRecommendation(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      session_(needs.session),
      productCreation_(needs.productCreation),
      recommendedIds_(needs.recommendedIds),
      logger_(needs.logger),
      lifetime_(needs.lifetime),
      http_(needs.http),
      json_(needs.json) {}

// --- What an application may ask for ---

void OrbinelRecommendation::getSmartRecommendationWithID(std::int32_t recommendationId, OptionalText locale,
                                                         OptionalText currency, Callback smartRecommendation) noexcept {
    guarded(reports_, "+[Orbinel getSmartRecommendationWithID:locale:currency:smartRecommendation:]", [&] {
        if (!helper_.shouldProceed()) return;
        const bool acceptable = !locale.view().empty() && !currency.view().empty();
        feedArguments(ofId, acceptable ? "" : valuesAreMissing,
                      [&] { return argumentsOf(recommendationId, locale, "currency", currency.view()); });
        if (!acceptable) return;
        getSmartRecommendation(recommendationId, locale.view(), nullptr, currency.view(),
                               std::move(smartRecommendation));
    });
}

void OrbinelRecommendation::getSmartRecommendationWithProduct(const OrbinelProduct& product,
                                                              std::int32_t recommendationId, OptionalText locale,
                                                              Callback smartRecommendation) noexcept {
    guarded(reports_, "+[Orbinel getSmartRecommendationWithProduct:recommendationID:locale:smartRecommendation:]", [&] {
        if (!helper_.shouldProceed()) return;
        const bool acceptable = !locale.view().empty() && product.isProductValid();
        feedArguments(ofProduct, acceptable ? "" : valuesOrProductAreMissing,
                      [&] { return argumentsOf(recommendationId, locale, "product", product.getProductSummary()); });
        if (!acceptable) return;
        getSmartRecommendation(recommendationId, locale.view(), &product, "", std::move(smartRecommendation));
    });
}

void OrbinelRecommendation::getSmartRecommendationWithProductIDs(const Array& productIds, std::int32_t recommendationId,
                                                                 OptionalText locale, OptionalText currency,
                                                                 Callback smartRecommendation) noexcept {
    guarded(reports_,
            "+[Orbinel getSmartRecommendationWithProductIDs:recommendationID:locale:currency:smartRecommendation:]",
            [&] {
                if (!helper_.shouldProceed()) return;
                const auto joined = joinedIds(productIds);
                const bool acceptable = !joined.empty() && !locale.view().empty() && !currency.view().empty();
                OrbinelProduct standIn;
                if (acceptable) {
                    // What the address does not need of a product is filled with a space.
                    const Array blank{" "};
                    standIn = productCreation_.createNewProductWithID({joined, " ", blank, " ", 1.0, currency});
                }
                feedArguments(ofProductIds, acceptable ? "" : valuesOrProductAreMissing,
                              [&] { return argumentsOf(recommendationId, locale, "productIds", productIds); });
                if (!acceptable) return;
                getSmartRecommendation(recommendationId, locale.view(), &standIn, currency.view(),
                                       std::move(smartRecommendation));
            });
}

template <std::invocable MakeArguments>
void OrbinelRecommendation::feedArguments(std::string_view method, std::string_view warning,
                                          MakeArguments&& make) noexcept {
    constexpr bool isError = false;
    const bool shouldFeed = warning.empty();
    reports_.feed(
        method,
        [&] {
            auto arguments = make();
            if (!warning.empty()) arguments.set("warning", warning);
            return arguments;
        },
        isError, shouldFeed);
}

// --- Addresses ---

void OrbinelRecommendation::storeEndpoints(const Dictionary& endpoints) noexcept {
    guarded(reports_, "+[OrbinelRecommendation storeEndpoints:]", [&] {
        helper_.standardStore().set(keys::recommendationEndpoints, endpoints);
        helper_.standardStore().synchronize();
    });
}

void OrbinelRecommendation::clearEndpoints() noexcept {
    guarded(reports_, "+[OrbinelRecommendation clearEndpoints]", [&] {
        helper_.standardStore().set(keys::recommendationEndpoints, Value());
        helper_.standardStore().synchronize();
    });
}

Dictionary OrbinelRecommendation::getRawEndpoints() const {
    auto stored = helper_.standardStore().value(keys::recommendationEndpoints);
    auto* endpoints = stored.ifDictionary();
    return endpoints != nullptr ? std::move(*endpoints) : Dictionary();
}

std::string OrbinelRecommendation::getRecommendationEndpoint(std::int32_t recommendationId, std::string_view locale,
                                                             std::string_view currency,
                                                             const OrbinelProduct* product) const noexcept {
    return guarded(
        reports_, "+[OrbinelRecommendation getRecommendationEndpoint:locale:currency:product:]", std::string(), [&] {
            const auto endpoints = getRawEndpoints();
            auto url =
                url_of::replaceAll(endpoints[std::to_string(recommendationId)].stringOrEmpty(), "{language}", locale);
            if (product != nullptr) {
                const auto categories = product->getTaxonomy();
                url = url_of::checkCategoryFilter(url, categories);
                url = url_of::replaceAll(url, "{currency}", product->getCurrency());
                url = url_of::replaceAll(url, "{category}", url_of::categoryText(categories));
                url = url_of::replaceAll(url, "{productID}", product->getProductID());
            } else {
                url = url_of::replaceAll(url, "{currency}", currency);
            }
            return percentEscaped(url);
        });
}

// --- Requests ---

void OrbinelRecommendation::getSmartRecommendation(std::int32_t recommendationId, std::string_view locale,
                                                   const OrbinelProduct* product, std::string_view currency,
                                                   Callback smartRecommendation) noexcept {
    const GuardedOperation operation(
        "+[OrbinelRecommendation getSmartRecommendation:locale:product:currency:smartRecommendation:]");
    guarded(reports_, operation, [&] {
        auto url = getRecommendationEndpoint(recommendationId, locale, currency, product);
        reports_.feed(ofId, [&] { return Dictionary{{"requestURL", url}}; });
        if (url.empty()) {
            if (smartRecommendation) smartRecommendation(Dictionary());
            return;
        }
        makeRecommendationRequest(
            url, [this, operation, recommendationId, url,
                  smartRecommendation = std::move(smartRecommendation)](const Dictionary& answer) {
                guarded(reports_, operation, [&] { handleAnswer(recommendationId, url, answer, smartRecommendation); });
            });
    });
}

// The ID is kept before the application learns of the answer, so that a click in its callback counts.
void OrbinelRecommendation::handleAnswer(std::int32_t recommendationId, const std::string& url,
                                         const Dictionary& answer, const Callback& smartRecommendation) {
    logger_.logViewWithRecommendationID(recommendationId, url);
    if (areThereProductsInSmartRecommendations(answer)) recommendedIds_.add(recommendationId);
    if (smartRecommendation) smartRecommendation(answer);
}

bool OrbinelRecommendation::areThereProductsInSmartRecommendations(const Dictionary& answer) const noexcept {
    return guarded(reports_, {"areThereProductsForRecommendationID", DescriptionForm::nameOnly}, false,
                   [&] { return countOf(answer["data"]) > 0; });
}

void OrbinelRecommendation::makeRecommendationRequest(const std::string& url, Success success) noexcept {
    guarded(reports_, "+[OrbinelRecommendation makeRecommendationRequest:success:]", [&] {
        if (!isLegalWebUrl(url)) return feedError("Invalid URL");
        platform::HttpRequest request;
        request.method = "GET";
        request.url = url;
        request.headers = {{"X-Requested-With", session_.partnerName()}};
        request.timeout = requestTimeout;
        const auto place = requests_.open();
        auto completion = [this, place, success = std::move(success)](const platform::HttpOutcome& outcome) {
            requests_.close(place);
            complete(outcome, success);
        };
        requests_.keep(place, http_.send(std::move(request), lifetime_.whileAlive(std::move(completion))));
    });
}

void OrbinelRecommendation::complete(const platform::HttpOutcome& outcome, const Success& success) {
    if (const auto* failure = std::get_if<platform::HttpFailure>(&outcome)) {
        return feedError(failure->reason.empty() ? "Unknown error" : failure->reason);
    }
    const auto& response = std::get<platform::HttpResponse>(outcome);
    if (response.status != statusOk) return feedError("HTTP error " + std::to_string(response.status));
    decode(response.body.value_or(std::string()), success);
}

void OrbinelRecommendation::decode(std::string_view body, const Success& success) {
    const auto parsed = json_.parse(body);
    if (const auto* failure = std::get_if<platform::JsonFailure>(&parsed)) {
        return feedError(failure->reason.empty() ? "Unknown JSON parsing error" : failure->reason);
    }
    const auto* answer = std::get<Value>(parsed).ifDictionary();
    if (answer == nullptr) return feedError("The answer is not a dictionary.");
    reports_.feed(ofId, [&] { return *answer; });
    success(*answer);
}

void OrbinelRecommendation::feedError(std::string_view error) noexcept {
    constexpr bool isError = true;
    reports_.feed(
        ofId,
        [&] {
            return Dictionary{{"error", error}};
        },
        isError);
}

}  // namespace orbinel
