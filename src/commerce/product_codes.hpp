#pragma once

#include <string_view>

/// The keys of a product's summary, as they travel.
namespace orbinel::product_code {

inline constexpr std::string_view PRODUCT_ID = "pid";         // text
inline constexpr std::string_view NAME = "na";                // text
inline constexpr std::string_view TAXONOMY = "ta";            // array of texts
inline constexpr std::string_view PRODUCT_IMAGE_URL = "piu";  // text
inline constexpr std::string_view UNIT_PRICE = "up";          // double
inline constexpr std::string_view CURRENCY = "cu";            // text
inline constexpr std::string_view QUANTITY = "qu";            // 32-bit integer
inline constexpr std::string_view SALE_ID = "e_guid";         // text
inline constexpr std::string_view UNIT_SALE_PRICE = "usp";    // double
inline constexpr std::string_view STOCK = "st";               // 32-bit integer
inline constexpr std::string_view IS_IN_STOCK = "iis";        // boolean
inline constexpr std::string_view COLOR = "co";               // text
inline constexpr std::string_view UNIT_SIZE = "si";           // text
inline constexpr std::string_view SHIPPING_COST = "sc";       // double
inline constexpr std::string_view VOUCHER_NAME = "vn";        // text
inline constexpr std::string_view VOUCHER_DISCOUNT = "vd";    // double
inline constexpr std::string_view PROMOTION_NAME = "pn";      // text
inline constexpr std::string_view PROMOTION_DISCOUNT = "pd";  // double
inline constexpr std::string_view GROUP_CODE = "groupcode";   // text

}  // namespace orbinel::product_code
