#pragma once

#include <optional>
#include <string_view>

namespace orbinel {

/// Why a session starts or stops; sent as "reason". Numbers of 3 and more have no name and are not sent.
namespace session_reason {
inline constexpr int standard = 0;  // the application became active, or left the foreground
inline constexpr int reinit = 1;
inline constexpr int login = 2;
}  // namespace session_reason

[[nodiscard]] constexpr std::optional<std::string_view> nameOfReason(int reason) noexcept {
    switch (reason) {
        case session_reason::standard:
            return "default";
        case session_reason::reinit:
            return "reinit";
        case session_reason::login:
            return "login";
        default:
            return std::nullopt;
    }
}

}  // namespace orbinel
