#pragma once

#include <string>
#include <string_view>

#include "orbinel/value.hpp"

namespace orbinel {

/// For logs that people pass on: what tells who somebody is, shortened to its first two characters and its length in
/// bytes ("ad…(12)"), which lets one recognise it and not find it out.

/// Wherever they stand in the text: e-mail addresses, telephone numbers, identifiers and tokens of 16 hexadecimal
/// digits or more.
[[nodiscard]] std::string redacted(std::string_view text);

/// What a report tells. `topic`: what it is about, such as the operation. Besides, whatever its form: values of user
/// attributes, identifiers and tokens by their keys, whole requests, and where the device is.
[[nodiscard]] Dictionary redacted(const Dictionary& data, std::string_view topic);

}  // namespace orbinel
