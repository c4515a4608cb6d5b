#pragma once

#include <string_view>

namespace orbinel {

/// Something before an "@", and after it something, a dot and something again (`^.+@.+\..+$`): a check for slips, not
/// for the grammar of RFC 5322. Line breaks are refused anywhere.
[[nodiscard]] bool isEmailValid(std::string_view text) noexcept;

/// ITU-T E.164: a plus sign, then 2 to 15 ASCII digits of which the first is not zero.
[[nodiscard]] bool isPhoneNumberValid(std::string_view text) noexcept;

}  // namespace orbinel
