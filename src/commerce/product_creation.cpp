#include "commerce/product_creation.hpp"

#include <cmath>
#include <string>

#include "base/guard.hpp"
#include "commerce/product_codes.hpp"

namespace orbinel {

OrbinelProduct ProductCreation::createNewProductWithID(const RequiredProductFields& fields) noexcept {
    return guarded(reports_, "+[Orbinel createNewProductWithID:name:taxonomy:imageURL:price:currency:]",
                   OrbinelProduct(access_, nullptr), [&] {
                       auto product = create(fields);
                       reports_.feed(
                           "createNewProduct", [&] { return product.getProductSummary(); }, false, true);
                       return product;
                   });
}

OrbinelProduct ProductCreation::create(const RequiredProductFields& fields) {
    if (!helper_.shouldProceed()) return {access_, nullptr};
    if (!shouldCreateProduct(fields)) return dummy();
    return {access_, std::make_shared<OrbinelProductInternal>(fields)};
}

bool ProductCreation::shouldCreateProduct(const RequiredProductFields& fields) noexcept {
    return !fields.productId.view().empty() && !fields.name.view().empty() && !fields.imageUrl.view().empty() &&
           !fields.currency.view().empty() && !fields.taxonomy.empty() && std::isfinite(fields.price) &&
           fields.price >= 0;
}

OrbinelProduct ProductCreation::getDummyProduct() noexcept {
    return guarded(reports_, "-[OrbinelProduct getDummyProduct]", OrbinelProduct(access_, nullptr),
                   [&] { return helper_.shouldProceed() ? dummy() : OrbinelProduct(access_, nullptr); });
}

OrbinelProduct ProductCreation::dummy() {
    const Array noCategory{""};
    const auto internal =
        std::make_shared<OrbinelProductInternal>(RequiredProductFields{"", "", noCategory, "", 0, ""});
    internal->set(product_code::QUANTITY, 0);
    internal->setProuctValidity(false);
    return {access_, internal};
}

}  // namespace orbinel
