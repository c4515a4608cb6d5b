#include "commerce/product_creation.hpp"

#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

#include "base/guard.hpp"
#include "commerce/product_codes.hpp"
#include "commerce/product_internal.hpp"

namespace orbinel {

namespace {

Dictionary summaryOf(const RequiredProductFields& fields, std::int32_t quantity) {
    return {{std::string(product_code::PRODUCT_ID), fields.productId.view()},
            {std::string(product_code::NAME), fields.name.view()},
            {std::string(product_code::TAXONOMY), fields.taxonomy},
            {std::string(product_code::PRODUCT_IMAGE_URL), fields.imageUrl.view()},
            {std::string(product_code::UNIT_PRICE), fields.price},
            {std::string(product_code::CURRENCY), fields.currency.view()},
            {std::string(product_code::QUANTITY), quantity}};
}

}  // namespace

OrbinelProduct ProductCreation::createNewProductWithID(const RequiredProductFields& fields) noexcept {
    return guarded(reports_, "+[Orbinel createNewProductWithID:name:taxonomy:imageURL:price:currency:]",
                   OrbinelProduct(access_, nullptr), [&] {
                       auto product = create(fields);
                       reports_.feedToPanel("createNewProduct", [&] { return product.getProductSummary(); });
                       return product;
                   });
}

OrbinelProduct ProductCreation::create(const RequiredProductFields& fields) {
    if (!helper_.shouldProceed()) return {access_, nullptr};
    if (!shouldCreateProduct(fields)) return getDummyProduct();
    constexpr std::int32_t pieces = 1;
    return productOf(summaryOf(fields, pieces), true);
}

bool ProductCreation::shouldCreateProduct(const RequiredProductFields& fields) noexcept {
    return !fields.productId.view().empty() && !fields.name.view().empty() && !fields.imageUrl.view().empty() &&
           !fields.currency.view().empty() && !fields.taxonomy.empty() && std::isfinite(fields.price) &&
           fields.price >= 0;
}

OrbinelProduct ProductCreation::getDummyProduct() const {
    const Array noCategory{""};
    constexpr std::int32_t pieces = 0;
    return productOf(summaryOf({"", "", noCategory, "", 0, ""}, pieces), false);
}

OrbinelProduct ProductCreation::productOf(Dictionary summary, bool valid) const {
    auto internal = std::make_shared<OrbinelProductInternal>();
    internal->setProuctSummary(std::move(summary));
    internal->setProuctValidity(valid);
    return {access_, std::move(internal)};
}

}  // namespace orbinel
