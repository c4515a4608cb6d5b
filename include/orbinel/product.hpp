#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "orbinel/export.hpp"
#include "orbinel/library_part.hpp"
#include "orbinel/optional_text.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

class OrbinelProductInternal;
struct ProductAccess;

/// A product that commerce events and recommendations carry. It is created by `Orbinel::createNewProductWithID` and
/// completed by chained calls:
///
///     auto shoe = Orbinel::createNewProductWithID("sku-1", "Shoe", {"Shoes"}, "https://…/1.png", 59.9, "EUR")
///                     .setColor("red").setStock(12).setCustomAttributeWithBoolean("vegan", true);
///     Orbinel::itemAddedToCartWithProduct(shoe);
///
/// Where a required field is missing the creation gives a dummy instead: a product that is not valid, on which every
/// setter does nothing and which every commerce operation refuses. A default-constructed product is a dummy of no
/// library and stands for an absent one.
///
/// Setters keep what they are given in the product's summary, a flat dictionary, and return the same product. What a
/// setter cannot take is dropped silently and leaves the summary as it is; so does every call while the library is
/// switched off or a consent is withheld, and after the library has been shut down. Nothing is thrown.
///
/// A copy has a summary of its own. Threads: any; one product may be used by several threads.
class ORBINEL_API OrbinelProduct {
public:
    OrbinelProduct() noexcept;
    OrbinelProduct(LibraryPart<ProductAccess> access, std::shared_ptr<OrbinelProductInternal> internal) noexcept;
    OrbinelProduct(const OrbinelProduct& other) noexcept;
    OrbinelProduct& operator=(const OrbinelProduct& other) noexcept;
    OrbinelProduct(OrbinelProduct&&) noexcept;
    OrbinelProduct& operator=(OrbinelProduct&&) noexcept;
    ~OrbinelProduct();

    /// Whether commerce operations take the product: it is no dummy, and the library may work.
    [[nodiscard]] bool isProductValid() const noexcept;
    /// The same; what every setter asks first.
    [[nodiscard]] bool getProductControlSuccess() const noexcept { return isProductValid(); }

    // --- Required fields. Texts of at least one byte, UTF-8. ---

    OrbinelProduct& setProductID(OptionalText productId) & noexcept;
    OrbinelProduct& setName(OptionalText name) & noexcept;
    /// The categories, from the widest to the narrowest: a list that is not empty; what is no text in it is not sent.
    OrbinelProduct& setTaxonomy(const Array& taxonomy) & noexcept;
    OrbinelProduct& setProductImageURL(OptionalText url) & noexcept;
    /// A finite amount of zero or more, in units of the currency.
    OrbinelProduct& setUnitPrice(double price) & noexcept;
    /// A currency code (ISO 4217).
    OrbinelProduct& setCurrency(OptionalText currency) & noexcept;

    // --- Further fields. Texts of at least one byte, amounts finite and of zero or more. ---

    /// Identifies the sale that the product is part of. `Orbinel::itemPurchasedWithSaleID` sets it as well, on the very
    /// product that it is given.
    OrbinelProduct& setSaleID(OptionalText saleId) & noexcept;
    OrbinelProduct& setColor(OptionalText color) & noexcept;
    OrbinelProduct& setSize(OptionalText size) & noexcept;
    OrbinelProduct& setVoucherName(OptionalText name) & noexcept;
    OrbinelProduct& setPromotionName(OptionalText name) & noexcept;
    /// Groups the variants of one product. The empty text is kept, too.
    OrbinelProduct& setGroupCode(OptionalText groupCode) & noexcept;
    OrbinelProduct& setSalePrice(double price) & noexcept;
    OrbinelProduct& setShippingCost(double cost) & noexcept;
    OrbinelProduct& setVoucherDiscount(double discount) & noexcept;
    OrbinelProduct& setPromotionDiscount(double discount) & noexcept;
    /// From 1 to 99999999.
    OrbinelProduct& setStock(std::int32_t stock) & noexcept;
    /// From 1 to 999; 1 from the creation on.
    OrbinelProduct& setQuantity(std::int32_t quantity) & noexcept;
    OrbinelProduct& setInStock(bool inStock) & noexcept;

    // --- Attributes of the application's own. ---
    //
    // A name is a lower-case ASCII letter followed by lower-case ASCII letters, digits and underscores. Attributes
    // share one dictionary with the fields above, which have short names there ("pid" is the product's ID): an
    // attribute of such a name replaces the field.

    /// Text of at least one byte.
    OrbinelProduct& setCustomAttributeWithString(OptionalText name, OptionalText value) & noexcept;
    /// Any number, zero and negative ones, too.
    OrbinelProduct& setCustomAttributeWithInt(OptionalText name, std::int32_t value) & noexcept;
    OrbinelProduct& setCustomAttributeWithBoolean(OptionalText name, bool value) & noexcept;
    /// A finite number.
    OrbinelProduct& setCustomAttributeWithDouble(OptionalText name, double value) & noexcept;
    /// A moment; kept as "yyyy-MM-dd'T'HH:mm:ss.SSS'Z'" with the digits of the device's local time.
    OrbinelProduct& setCustomAttributeWithDate(OptionalText name, std::optional<Date> value) & noexcept;
    /// Only the texts among the elements are kept; the list may become empty.
    OrbinelProduct& setCustomAttributeWithArray(OptionalText name, const Array& value) & noexcept;

    // The same on a temporary.
    // clang-format off
    OrbinelProduct&& setProductID(OptionalText v) && noexcept { return std::move(setProductID(v)); }
    OrbinelProduct&& setName(OptionalText v) && noexcept { return std::move(setName(v)); }
    OrbinelProduct&& setTaxonomy(const Array& v) && noexcept { return std::move(setTaxonomy(v)); }
    OrbinelProduct&& setProductImageURL(OptionalText v) && noexcept { return std::move(setProductImageURL(v)); }
    OrbinelProduct&& setUnitPrice(double v) && noexcept { return std::move(setUnitPrice(v)); }
    OrbinelProduct&& setCurrency(OptionalText v) && noexcept { return std::move(setCurrency(v)); }
    OrbinelProduct&& setSaleID(OptionalText v) && noexcept { return std::move(setSaleID(v)); }
    OrbinelProduct&& setColor(OptionalText v) && noexcept { return std::move(setColor(v)); }
    OrbinelProduct&& setSize(OptionalText v) && noexcept { return std::move(setSize(v)); }
    OrbinelProduct&& setVoucherName(OptionalText v) && noexcept { return std::move(setVoucherName(v)); }
    OrbinelProduct&& setPromotionName(OptionalText v) && noexcept { return std::move(setPromotionName(v)); }
    OrbinelProduct&& setGroupCode(OptionalText v) && noexcept { return std::move(setGroupCode(v)); }
    OrbinelProduct&& setSalePrice(double v) && noexcept { return std::move(setSalePrice(v)); }
    OrbinelProduct&& setShippingCost(double v) && noexcept { return std::move(setShippingCost(v)); }
    OrbinelProduct&& setVoucherDiscount(double v) && noexcept { return std::move(setVoucherDiscount(v)); }
    OrbinelProduct&& setPromotionDiscount(double v) && noexcept { return std::move(setPromotionDiscount(v)); }
    OrbinelProduct&& setStock(std::int32_t v) && noexcept { return std::move(setStock(v)); }
    OrbinelProduct&& setQuantity(std::int32_t v) && noexcept { return std::move(setQuantity(v)); }
    OrbinelProduct&& setInStock(bool v) && noexcept { return std::move(setInStock(v)); }
    OrbinelProduct&& setCustomAttributeWithString(OptionalText n, OptionalText v) && noexcept {
        return std::move(setCustomAttributeWithString(n, v));
    }
    OrbinelProduct&& setCustomAttributeWithInt(OptionalText n, std::int32_t v) && noexcept {
        return std::move(setCustomAttributeWithInt(n, v));
    }
    OrbinelProduct&& setCustomAttributeWithBoolean(OptionalText n, bool v) && noexcept {
        return std::move(setCustomAttributeWithBoolean(n, v));
    }
    OrbinelProduct&& setCustomAttributeWithDouble(OptionalText n, double v) && noexcept {
        return std::move(setCustomAttributeWithDouble(n, v));
    }
    OrbinelProduct&& setCustomAttributeWithDate(OptionalText n, std::optional<Date> v) && noexcept {
        return std::move(setCustomAttributeWithDate(n, v));
    }
    OrbinelProduct&& setCustomAttributeWithArray(OptionalText n, const Array& v) && noexcept {
        return std::move(setCustomAttributeWithArray(n, v));
    }
    // clang-format on

    // --- What the summary holds now. A field that is not there reads as empty or zero. These work at any time. ---

    [[nodiscard]] Dictionary getProductSummary() const noexcept;
    [[nodiscard]] std::string getProductID() const noexcept;
    [[nodiscard]] std::string getName() const noexcept;
    [[nodiscard]] Array getTaxonomy() const noexcept;
    [[nodiscard]] std::string getImageURL() const noexcept;
    [[nodiscard]] std::string getCurrency() const noexcept;
    [[nodiscard]] std::string getGroupCode() const noexcept;
    [[nodiscard]] double getUnitPrice() const noexcept;
    [[nodiscard]] std::int32_t getQuantity() const noexcept;

    // By name; nothing where there is no attribute of that name or it is of another kind.

    [[nodiscard]] std::optional<std::string> getCustomAttributeString(OptionalText name) const noexcept;
    [[nodiscard]] std::optional<std::int32_t> getCustomAttributeInt(OptionalText name) const noexcept;
    [[nodiscard]] std::optional<bool> getCustomAttributeBoolean(OptionalText name) const noexcept;
    /// Any number.
    [[nodiscard]] std::optional<double> getCustomAttributeDouble(OptionalText name) const noexcept;
    /// The text as which the moment is kept.
    [[nodiscard]] std::optional<std::string> getCustomAttributeDate(OptionalText name) const noexcept;
    [[nodiscard]] std::optional<Array> getCustomAttributeArray(OptionalText name) const noexcept;

    /// For the library's own use: what its products are made of, shared with this object; nothing for one of no
    /// library.
    [[nodiscard]] const std::shared_ptr<OrbinelProductInternal>& internal() const noexcept { return internal_; }

private:
    template <typename Read>
    auto read(const char* operation, Read&& readIt) const noexcept;
    template <typename Result, typename Look>
    Result look(const char* operation, Look&& lookAt) const noexcept;
    template <typename Step>
    void visitValid(const char* operation, Step&& step) noexcept;
    template <typename MakeValue>
    void store(const char* operation, std::string_view field, MakeValue&& makeValue) noexcept;
    template <typename MakeValue>
    void storeCustom(const char* operation, OptionalText name, MakeValue&& makeValue) noexcept;

    LibraryPart<ProductAccess> access_;
    std::shared_ptr<OrbinelProductInternal> internal_;
};

}  // namespace orbinel
