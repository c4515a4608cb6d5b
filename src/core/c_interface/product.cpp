#include <optional>

#include "core/c_interface/dates.hpp"
#include "core/c_interface/handles.hpp"

using namespace orbinel;
using namespace orbinel::c_interface;

namespace {

/// Writes what is read where there is something, and says whether there is.
template <typename Content, typename Look>
bool lookAtOptional(const char* function, const orbinel_product* product, Content* target, Look&& lookAt) noexcept {
    return look(function, product, false, [&](const OrbinelProduct& object) {
        const std::optional<Content> content = lookAt(object);
        if (content && target != nullptr) *target = *content;
        return content.has_value();
    });
}

char* newTextOrNull(const std::optional<std::string>& text) noexcept { return text ? newText(*text) : nullptr; }

}  // namespace

orbinel_product* orbinel_product_copy(const orbinel_product* product) { return copyOf(product); }

void orbinel_product_free(orbinel_product* product) { delete product; }

bool orbinel_product_is_product_valid(const orbinel_product* product) {
    return look(__func__, product, false, [](const auto& object) { return object.isProductValid(); });
}

bool orbinel_product_get_product_control_success(const orbinel_product* product) {
    return look(__func__, product, false, [](const auto& object) { return object.getProductControlSuccess(); });
}

void orbinel_product_set_product_id(orbinel_product* product, const char* product_id) {
    on(__func__, product, [&](auto& object) { object.setProductID(product_id); });
}

void orbinel_product_set_name(orbinel_product* product, const char* name) {
    on(__func__, product, [&](auto& object) { object.setName(name); });
}

void orbinel_product_set_taxonomy(orbinel_product* product, const char* taxonomy) {
    on(__func__, product, [&](auto& object) { object.setTaxonomy(arrayOf("taxonomy", taxonomy)); });
}

void orbinel_product_set_product_image_url(orbinel_product* product, const char* url) {
    on(__func__, product, [&](auto& object) { object.setProductImageURL(url); });
}

void orbinel_product_set_unit_price(orbinel_product* product, double price) {
    on(__func__, product, [&](auto& object) { object.setUnitPrice(price); });
}

void orbinel_product_set_currency(orbinel_product* product, const char* currency) {
    on(__func__, product, [&](auto& object) { object.setCurrency(currency); });
}

void orbinel_product_set_sale_id(orbinel_product* product, const char* sale_id) {
    on(__func__, product, [&](auto& object) { object.setSaleID(sale_id); });
}

void orbinel_product_set_color(orbinel_product* product, const char* color) {
    on(__func__, product, [&](auto& object) { object.setColor(color); });
}

void orbinel_product_set_size(orbinel_product* product, const char* size) {
    on(__func__, product, [&](auto& object) { object.setSize(size); });
}

void orbinel_product_set_voucher_name(orbinel_product* product, const char* name) {
    on(__func__, product, [&](auto& object) { object.setVoucherName(name); });
}

void orbinel_product_set_promotion_name(orbinel_product* product, const char* name) {
    on(__func__, product, [&](auto& object) { object.setPromotionName(name); });
}

void orbinel_product_set_group_code(orbinel_product* product, const char* group_code) {
    on(__func__, product, [&](auto& object) { object.setGroupCode(group_code); });
}

void orbinel_product_set_sale_price(orbinel_product* product, double price) {
    on(__func__, product, [&](auto& object) { object.setSalePrice(price); });
}

void orbinel_product_set_shipping_cost(orbinel_product* product, double cost) {
    on(__func__, product, [&](auto& object) { object.setShippingCost(cost); });
}

void orbinel_product_set_voucher_discount(orbinel_product* product, double discount) {
    on(__func__, product, [&](auto& object) { object.setVoucherDiscount(discount); });
}

void orbinel_product_set_promotion_discount(orbinel_product* product, double discount) {
    on(__func__, product, [&](auto& object) { object.setPromotionDiscount(discount); });
}

void orbinel_product_set_stock(orbinel_product* product, int32_t stock) {
    on(__func__, product, [&](auto& object) { object.setStock(stock); });
}

void orbinel_product_set_quantity(orbinel_product* product, int32_t quantity) {
    on(__func__, product, [&](auto& object) { object.setQuantity(quantity); });
}

void orbinel_product_set_in_stock(orbinel_product* product, bool in_stock) {
    on(__func__, product, [&](auto& object) { object.setInStock(in_stock); });
}

void orbinel_product_set_custom_attribute_with_string(orbinel_product* product, const char* name, const char* value) {
    on(__func__, product, [&](auto& object) { object.setCustomAttributeWithString(name, value); });
}

void orbinel_product_set_custom_attribute_with_int(orbinel_product* product, const char* name, int32_t value) {
    on(__func__, product, [&](auto& object) { object.setCustomAttributeWithInt(name, value); });
}

void orbinel_product_set_custom_attribute_with_boolean(orbinel_product* product, const char* name, bool value) {
    on(__func__, product, [&](auto& object) { object.setCustomAttributeWithBoolean(name, value); });
}

void orbinel_product_set_custom_attribute_with_double(orbinel_product* product, const char* name, double value) {
    on(__func__, product, [&](auto& object) { object.setCustomAttributeWithDouble(name, value); });
}

void orbinel_product_set_custom_attribute_with_date(orbinel_product* product, const char* name, const double* value) {
    on(__func__, product, [&](auto& object) { object.setCustomAttributeWithDate(name, dateOf(value)); });
}

void orbinel_product_set_custom_attribute_with_array(orbinel_product* product, const char* name, const char* value) {
    on(__func__, product, [&](auto& object) { object.setCustomAttributeWithArray(name, arrayOf("value", value)); });
}

char* orbinel_product_get_product_summary(const orbinel_product* product) {
    return lookAtJson(__func__, product, [](const auto& object) { return object.getProductSummary(); });
}

char* orbinel_product_get_product_id(const orbinel_product* product) {
    return lookAtText(__func__, product, [](const auto& object) { return object.getProductID(); });
}

char* orbinel_product_get_name(const orbinel_product* product) {
    return lookAtText(__func__, product, [](const auto& object) { return object.getName(); });
}

char* orbinel_product_get_taxonomy(const orbinel_product* product) {
    return lookAtJson(__func__, product, [](const auto& object) { return object.getTaxonomy(); });
}

char* orbinel_product_get_image_url(const orbinel_product* product) {
    return lookAtText(__func__, product, [](const auto& object) { return object.getImageURL(); });
}

char* orbinel_product_get_currency(const orbinel_product* product) {
    return lookAtText(__func__, product, [](const auto& object) { return object.getCurrency(); });
}

char* orbinel_product_get_group_code(const orbinel_product* product) {
    return lookAtText(__func__, product, [](const auto& object) { return object.getGroupCode(); });
}

double orbinel_product_get_unit_price(const orbinel_product* product) {
    return look(__func__, product, 0.0, [](const auto& object) { return object.getUnitPrice(); });
}

int32_t orbinel_product_get_quantity(const orbinel_product* product) {
    return look(__func__, product, int32_t{0}, [](const auto& object) { return object.getQuantity(); });
}

char* orbinel_product_get_custom_attribute_string(const orbinel_product* product, const char* name) {
    return look(__func__, product, static_cast<char*>(nullptr),
                [&](const auto& object) { return newTextOrNull(object.getCustomAttributeString(name)); });
}

bool orbinel_product_get_custom_attribute_int(const orbinel_product* product, const char* name, int32_t* value) {
    return lookAtOptional(__func__, product, value,
                          [&](const auto& object) { return object.getCustomAttributeInt(name); });
}

bool orbinel_product_get_custom_attribute_boolean(const orbinel_product* product, const char* name, bool* value) {
    return lookAtOptional(__func__, product, value,
                          [&](const auto& object) { return object.getCustomAttributeBoolean(name); });
}

bool orbinel_product_get_custom_attribute_double(const orbinel_product* product, const char* name, double* value) {
    return lookAtOptional(__func__, product, value,
                          [&](const auto& object) { return object.getCustomAttributeDouble(name); });
}

char* orbinel_product_get_custom_attribute_date(const orbinel_product* product, const char* name) {
    return look(__func__, product, static_cast<char*>(nullptr),
                [&](const auto& object) { return newTextOrNull(object.getCustomAttributeDate(name)); });
}

char* orbinel_product_get_custom_attribute_array(const orbinel_product* product, const char* name) {
    return look(__func__, product, static_cast<char*>(nullptr), [&](const auto& object) {
        const auto array = object.getCustomAttributeArray(name);
        return array ? jsonOf(*array) : nullptr;
    });
}
