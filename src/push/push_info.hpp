#pragma once

#include <optional>
#include <string_view>

#include "orbinel/value.hpp"

namespace orbinel {

/// What the library reads of a push.
namespace push_keys {
inline constexpr std::string_view aps = "aps";  // the platform's own entry
inline constexpr std::string_view source = "source";
inline constexpr std::string_view campId = "camp_id";
inline constexpr std::string_view campType = "camp_type";
inline constexpr std::string_view variantId = "variant_id";
inline constexpr std::string_view journeyId = "journey_id";
inline constexpr std::string_view inappTest = "inapp_test";
inline constexpr std::string_view testContents = "test_contents";
inline constexpr std::string_view pushInapp = "push_inapp";
inline constexpr std::string_view internalLink = "orb_dl_internal";
inline constexpr std::string_view externalLink = "orb_dl_external";
inline constexpr std::string_view urlSchemeLink = "orb_dl_url_scheme";
}  // namespace push_keys

/// The payload among what the platform handed over, which is a payload itself, or the launch options that hold one.
/// Empty where it is nested too deeply to be one.
[[nodiscard]] Dictionary payloadOf(const Dictionary& userInfo);

/// The same, where it is a push that somebody sent: one with "aps".
[[nodiscard]] std::optional<Dictionary> getPushInfo(const Dictionary& userInfo);

}  // namespace orbinel
