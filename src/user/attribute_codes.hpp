#pragma once

#include <string_view>

/// The codes under which the standard attributes of a user travel.
namespace orbinel::attribute_codes {

inline constexpr std::string_view LOGIN_STATUS = "mls";
inline constexpr std::string_view GENDER = "ge";
inline constexpr std::string_view BIRTHDAY = "bi";
inline constexpr std::string_view NAME = "na";
inline constexpr std::string_view SURNAME = "su";
inline constexpr std::string_view AGE = "ag";
inline constexpr std::string_view EMAIL = "em";          // of an identifier
inline constexpr std::string_view MANUEL_EMAIL = "mem";  // set as an attribute
inline constexpr std::string_view EMAIL_OPTIN = "eo";
inline constexpr std::string_view PHONE_NUMBER = "pn";          // of an identifier
inline constexpr std::string_view MANUEL_PHONE_NUMBER = "mpn";  // set as an attribute
inline constexpr std::string_view SMS_OPTIN = "so";
inline constexpr std::string_view LANGUAGE = "la";
inline constexpr std::string_view LOCALE = "lo";
inline constexpr std::string_view FACEBOOK_ID = "fid";
inline constexpr std::string_view TWITTER_ID = "tid";
inline constexpr std::string_view UUID = "uuid";  // the application's own identifier of the user
inline constexpr std::string_view WHATSAPP_OPTIN = "wbo";

/// What stands before the key of a custom identifier.
inline constexpr std::string_view customPrefix = "c_";

/// The long name of the few codes that have one; every other text as it is.
[[nodiscard]] std::string_view longNameOf(std::string_view code) noexcept;

}  // namespace orbinel::attribute_codes
