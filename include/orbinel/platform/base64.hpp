#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orbinel::platform {

/// Base64 with the standard alphabet and padding (RFC 4648, section 4), without line breaks.
///
/// Threads: callable from any thread; no state.
class Base64 {
public:
    virtual ~Base64() = default;

    [[nodiscard]] virtual std::string encode(std::string_view bytes) const noexcept = 0;

    /// The bytes; nothing where the text is not base64 to the letter (a foreign character, white space, wrong or
    /// missing padding).
    [[nodiscard]] virtual std::optional<std::string> decode(std::string_view text) const noexcept = 0;
};

}  // namespace orbinel::platform
