#pragma once

#include <memory>
#include <utility>

#include "base/reports.hpp"
#include "commerce/product_access.hpp"
#include "orbinel/optional_text.hpp"
#include "orbinel/product.hpp"
#include "session/helper.hpp"

namespace orbinel {

/// The fields that every product has.
struct RequiredProductFields {
    OptionalText productId;
    OptionalText name;
    const Array& taxonomy;
    OptionalText imageUrl;
    double price = 0;
    OptionalText currency;
};

/// Creates products. One that lacks a required field is created all the same, as a dummy, so that an application's
/// chained calls never meet a missing object.
///
/// Threads: any, once it has begun.
class ProductCreation {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
    };

    explicit ProductCreation(const Needs& needs) : reports_(needs.reports), helper_(needs.helper) {}

    /// Called when the library has an owner that its products can refer to weakly.
    void begin(LibraryPart<ProductAccess> access) { access_ = access; }

    /// Never nothing. While the gate is closed: a dummy without a summary.
    [[nodiscard]] OrbinelProduct createNewProductWithID(const RequiredProductFields& fields) noexcept;

    /// Whether the texts have a length, the taxonomy an element, and the price is finite and not below zero.
    [[nodiscard]] static bool shouldCreateProduct(const RequiredProductFields& fields) noexcept;

private:
    [[nodiscard]] OrbinelProduct getDummyProduct() const;  // of empty fields, not valid; the gate has been asked
    [[nodiscard]] OrbinelProduct productOf(Dictionary summary, bool valid) const;
    [[nodiscard]] OrbinelProduct create(const RequiredProductFields& fields);

    Reports& reports_;
    OrbinelHelper& helper_;
    LibraryPart<ProductAccess> access_;  // set once, before other threads come
};

}  // namespace orbinel
