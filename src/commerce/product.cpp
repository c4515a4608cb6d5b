#include "orbinel/product.hpp"

#include <cmath>
#include <exception>
#include <utility>

#include "base/guard.hpp"
#include "base/visit.hpp"
#include "commerce/product_access.hpp"
#include "commerce/product_codes.hpp"
#include "commerce/product_internal.hpp"
#include "events/data_types.hpp"
#include "events/event_parameters.hpp"

namespace orbinel {

namespace {

using event_parameters::ofText;

constexpr std::int32_t largestStock = 99'999'999;
constexpr std::int32_t largestQuantity = 999;

Value ofAmount(double amount) { return std::isfinite(amount) && amount >= 0 ? Value(amount) : Value(); }

Value ofCount(std::int32_t count, std::int32_t largest) {
    return count >= 1 && count <= largest ? Value(count) : Value();
}

/// For the development log, which does not repeat what was given.
void noteRefusal(const ProductAccess& access, const char* operation) noexcept {
    access.reports.note(
        [&] { return std::string(operation) + " changed nothing: its value is empty or out of range."; });
}

template <typename Content>
std::optional<Content> copyOf(const Content* content) {
    return content != nullptr ? std::optional(*content) : std::nullopt;
}

}  // namespace

// Out of memory leaves a product of no library.

OrbinelProduct::OrbinelProduct() noexcept = default;

OrbinelProduct::OrbinelProduct(LibraryPart<ProductAccess> access,
                               std::shared_ptr<OrbinelProductInternal> internal) noexcept
    : access_(access), internal_(std::move(internal)) {}

OrbinelProduct::OrbinelProduct(const OrbinelProduct& other) noexcept : access_(other.access_) {
    try {
        if (other.internal_ != nullptr) internal_ = std::make_shared<OrbinelProductInternal>(*other.internal_);
    } catch (const std::exception&) {
        internal_.reset();
    }
}

OrbinelProduct& OrbinelProduct::operator=(const OrbinelProduct& other) noexcept {
    if (this != &other) *this = OrbinelProduct(other);
    return *this;
}

OrbinelProduct::OrbinelProduct(OrbinelProduct&&) noexcept = default;
OrbinelProduct& OrbinelProduct::operator=(OrbinelProduct&&) noexcept = default;
OrbinelProduct::~OrbinelProduct() = default;

bool OrbinelProduct::isProductValid() const noexcept {
    const Visit<ProductAccess> access(access_);
    if (!access || internal_ == nullptr) return false;
    return guarded(access->reports, "-[OrbinelProduct isProductValid]", false,
                   [&] { return access->helper.shouldProceed() && internal_->isValid(); });
}

// --- Setters ---

/// Runs a step that needs the library, while that may work and the product is valid.
template <typename Step>
void OrbinelProduct::visitValid(const char* operation, Step&& step) noexcept {
    const Visit<ProductAccess> access(access_);
    if (!access || internal_ == nullptr) return;
    guarded(access->reports, operation, [&] {
        if (access->helper.shouldProceed() && internal_->isValid()) step(*access);
    });
}

template <typename MakeValue>
void OrbinelProduct::store(const char* operation, std::string_view field, MakeValue&& makeValue) noexcept {
    visitValid(operation, [&](const ProductAccess& access) {
        Value value = makeValue();
        if (value.isAbsent()) return noteRefusal(access, operation);
        internal_->set(field, std::move(value));
    });
}

template <typename MakeValue>
void OrbinelProduct::storeCustom(const char* operation, OptionalText name, MakeValue&& makeValue) noexcept {
    visitValid(operation, [&](const ProductAccess& access) {
        if (!access.validation.isNameValid(name.view())) return;
        Value value = makeValue(access);
        if (value.isAbsent()) return noteRefusal(access, operation);
        internal_->set(name.view(), std::move(value));
    });
}

OrbinelProduct& OrbinelProduct::setProductID(OptionalText productId) & noexcept {
    store("-[OrbinelProduct setProductID]", product_code::PRODUCT_ID, [&] { return ofText(productId); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setName(OptionalText name) & noexcept {
    store("-[OrbinelProduct setName]", product_code::NAME, [&] { return ofText(name); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setTaxonomy(const Array& taxonomy) & noexcept {
    store("-[OrbinelProduct setTaxonomy]", product_code::TAXONOMY,
          [&] { return taxonomy.empty() ? Value() : Value(taxonomy); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setProductImageURL(OptionalText url) & noexcept {
    store("-[OrbinelProduct setProductImageURL]", product_code::PRODUCT_IMAGE_URL, [&] { return ofText(url); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setUnitPrice(double price) & noexcept {
    store("-[OrbinelProduct setUnitPrice]", product_code::UNIT_PRICE, [&] { return ofAmount(price); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setCurrency(OptionalText currency) & noexcept {
    store("-[OrbinelProduct setCurrency]", product_code::CURRENCY, [&] { return ofText(currency); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setSaleID(OptionalText saleId) & noexcept {
    store("-[OrbinelProduct setSaleID]", product_code::SALE_ID, [&] { return ofText(saleId); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setColor(OptionalText color) & noexcept {
    store("-[OrbinelProduct setColor]", product_code::COLOR, [&] { return ofText(color); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setSize(OptionalText size) & noexcept {
    store("-[OrbinelProduct setSize]", product_code::UNIT_SIZE, [&] { return ofText(size); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setVoucherName(OptionalText name) & noexcept {
    store("-[OrbinelProduct setVoucherName]", product_code::VOUCHER_NAME, [&] { return ofText(name); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setPromotionName(OptionalText name) & noexcept {
    store("-[OrbinelProduct setPromotionName]", product_code::PROMOTION_NAME, [&] { return ofText(name); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setGroupCode(OptionalText groupCode) & noexcept {
    store("-[OrbinelProduct setGroupCode]", product_code::GROUP_CODE, [&] { return Value(groupCode.copy()); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setSalePrice(double price) & noexcept {
    store("-[OrbinelProduct setSalePrice]", product_code::UNIT_SALE_PRICE, [&] { return ofAmount(price); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setShippingCost(double cost) & noexcept {
    store("-[OrbinelProduct setShippingCost]", product_code::SHIPPING_COST, [&] { return ofAmount(cost); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setVoucherDiscount(double discount) & noexcept {
    store("-[OrbinelProduct setVoucherDiscount]", product_code::VOUCHER_DISCOUNT, [&] { return ofAmount(discount); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setPromotionDiscount(double discount) & noexcept {
    store("-[OrbinelProduct setPromotionDiscount]", product_code::PROMOTION_DISCOUNT,
          [&] { return ofAmount(discount); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setStock(std::int32_t stock) & noexcept {
    store("-[OrbinelProduct setStock]", product_code::STOCK, [&] { return ofCount(stock, largestStock); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setQuantity(std::int32_t quantity) & noexcept {
    store("-[OrbinelProduct setQuantity]", product_code::QUANTITY, [&] { return ofCount(quantity, largestQuantity); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setInStock(bool inStock) & noexcept {
    store("-[OrbinelProduct setInStock]", product_code::IS_IN_STOCK, [&] { return Value(inStock); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setCustomAttributeWithString(OptionalText name, OptionalText value) & noexcept {
    storeCustom("-[OrbinelProduct setCustomAttributeWithString]", name,
                [&](const ProductAccess&) { return ofText(value); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setCustomAttributeWithInt(OptionalText name, std::int32_t value) & noexcept {
    storeCustom("-[OrbinelProduct setCustomAttributeWithInt]", name,
                [&](const ProductAccess&) { return Value(value); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setCustomAttributeWithBoolean(OptionalText name, bool value) & noexcept {
    storeCustom("-[OrbinelProduct setCustomAttributeWithBoolean]", name,
                [&](const ProductAccess&) { return Value(value); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setCustomAttributeWithDouble(OptionalText name, double value) & noexcept {
    storeCustom("-[OrbinelProduct setCustomAttributeWithDouble]", name,
                [&](const ProductAccess&) { return event_parameters::ofDouble(value); });
    return *this;
}

OrbinelProduct& OrbinelProduct::setCustomAttributeWithDate(OptionalText name, std::optional<Date> value) & noexcept {
    storeCustom("-[OrbinelProduct setCustomAttributeWithDate]", name, [&](const ProductAccess& access) {
        return value ? Value(access.helper.getRFCFromNSDate(*value)) : Value();
    });
    return *this;
}

OrbinelProduct& OrbinelProduct::setCustomAttributeWithArray(OptionalText name, const Array& value) & noexcept {
    storeCustom("-[OrbinelProduct setCustomAttributeWithArray]", name,
                [&](const ProductAccess&) { return event_parameters::ofArray(value); });
    return *this;
}

// --- Getters ---

/// What `readIt` reads of the product. Needs nothing of the library but, when it fails, somebody to tell.
template <typename Read>
auto OrbinelProduct::read(const char* operation, Read&& readIt) const noexcept {
    using Result = decltype(readIt(static_cast<const OrbinelProductInternal&>(*internal_)));
    if (internal_ == nullptr) return Result();
    try {
        return readIt(static_cast<const OrbinelProductInternal&>(*internal_));
    } catch (const std::exception& exception) {
        if (const Visit<ProductAccess> access(access_); access) {
            reportException(access->reports, operation, exception.what());
        }
    }
    return Result();
}

/// What `lookAt` reads in the summary.
template <typename Result, typename Look>
Result OrbinelProduct::look(const char* operation, Look&& lookAt) const noexcept {
    return read(operation, [&](const OrbinelProductInternal& internal) -> Result { return internal.inspect(lookAt); });
}

Dictionary OrbinelProduct::getProductSummary() const noexcept {
    return read("-[OrbinelProduct getProductSummary]",
                [](const OrbinelProductInternal& internal) { return internal.getProuctSummary(); });
}

std::string OrbinelProduct::getProductID() const noexcept {
    return look<std::string>("-[OrbinelProduct getProductID]", [](const Dictionary& summary) {
        return summary[product_code::PRODUCT_ID].stringOrEmpty();
    });
}

std::string OrbinelProduct::getName() const noexcept {
    return look<std::string>("-[OrbinelProduct getName]",
                             [](const Dictionary& summary) { return summary[product_code::NAME].stringOrEmpty(); });
}

Array OrbinelProduct::getTaxonomy() const noexcept {
    return look<Array>("-[OrbinelProduct getTaxonomy]", [](const Dictionary& summary) {
        return copyOf(summary[product_code::TAXONOMY].ifArray()).value_or(Array());
    });
}

std::string OrbinelProduct::getImageURL() const noexcept {
    return look<std::string>("-[OrbinelProduct getImageURL]", [](const Dictionary& summary) {
        return summary[product_code::PRODUCT_IMAGE_URL].stringOrEmpty();
    });
}

std::string OrbinelProduct::getCurrency() const noexcept {
    return look<std::string>("-[OrbinelProduct getCurrency]",
                             [](const Dictionary& summary) { return summary[product_code::CURRENCY].stringOrEmpty(); });
}

std::string OrbinelProduct::getGroupCode() const noexcept {
    return look<std::string>("-[OrbinelProduct getGroupCode]", [](const Dictionary& summary) {
        return summary[product_code::GROUP_CODE].stringOrEmpty();
    });
}

double OrbinelProduct::getUnitPrice() const noexcept {
    return look<double>("-[OrbinelProduct getUnitPrice]", [](const Dictionary& summary) {
        return summary[product_code::UNIT_PRICE].number().value_or(0);
    });
}

std::int32_t OrbinelProduct::getQuantity() const noexcept {
    return look<std::int32_t>("-[OrbinelProduct getQuantity]", [](const Dictionary& summary) {
        return copyOf(summary[product_code::QUANTITY].ifInt32()).value_or(0);
    });
}

std::optional<std::string> OrbinelProduct::getCustomAttributeString(OptionalText name) const noexcept {
    return look<std::optional<std::string>>(
        "-[OrbinelProduct getCustomAttributeString:]",
        [&](const Dictionary& summary) { return copyOf(summary[name.view()].ifString()); });
}

std::optional<std::int32_t> OrbinelProduct::getCustomAttributeInt(OptionalText name) const noexcept {
    return look<std::optional<std::int32_t>>(
        "-[OrbinelProduct getCustomAttributeInt:]",
        [&](const Dictionary& summary) { return copyOf(summary[name.view()].ifInt32()); });
}

std::optional<bool> OrbinelProduct::getCustomAttributeBoolean(OptionalText name) const noexcept {
    return look<std::optional<bool>>("-[OrbinelProduct getCustomAttributeBoolean:]", [&](const Dictionary& summary) {
        return copyOf(summary[name.view()].ifBoolean());
    });
}

std::optional<double> OrbinelProduct::getCustomAttributeDouble(OptionalText name) const noexcept {
    return look<std::optional<double>>("-[OrbinelProduct getCustomAttributeDouble:]",
                                       [&](const Dictionary& summary) { return summary[name.view()].number(); });
}

std::optional<std::string> OrbinelProduct::getCustomAttributeDate(OptionalText name) const noexcept {
    return look<std::optional<std::string>>(
        "-[OrbinelProduct getCustomAttributeDate:]",
        [&](const Dictionary& summary) { return copyOf(summary[name.view()].ifString()); });
}

std::optional<Array> OrbinelProduct::getCustomAttributeArray(OptionalText name) const noexcept {
    return look<std::optional<Array>>("-[OrbinelProduct getCustomAttributeArray:]", [&](const Dictionary& summary) {
        return copyOf(summary[name.view()].ifArray());
    });
}

}  // namespace orbinel
