#pragma once

#include <string>
#include <string_view>
#include <variant>

namespace orbinel::tool {

struct Failure {
    std::string clause;  // what is wrong, without a capital letter or an end mark
};

/// The key that both ends build from a request's time stamp: decimal digits, at least one.
[[nodiscard]] std::string requestKey(std::string_view timestamp);

/// Base64, each character crossed with the key's, base64 again.
[[nodiscard]] std::string scramble(std::string_view text, std::string_view timestamp);

/// The reverse. Stricter than it has to be, so that a sender's slip is found: standard alphabet, padding, no line
/// breaks.
[[nodiscard]] std::variant<std::string, Failure> unscramble(std::string_view scrambled, std::string_view timestamp);

}  // namespace orbinel::tool
