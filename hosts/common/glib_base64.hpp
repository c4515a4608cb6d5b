#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "orbinel/platform/base64.hpp"

namespace orbinel::hosts {

/// Base64 by GLib, whose lenient decoder only gets texts that are base64 to the letter: bits of the last character
/// that stand for nothing must be zero, too.
class GlibBase64 final : public platform::Base64 {
public:
    [[nodiscard]] std::string encode(std::string_view bytes) const noexcept override;
    [[nodiscard]] std::optional<std::string> decode(std::string_view text) const noexcept override;
};

}  // namespace orbinel::hosts
