#pragma once

#include <string>
#include <string_view>

/// What URLs are made of (RFC 3986), for texts of which nobody knows yet whether they are any.
namespace orbinel {

/// The scheme in lower case; empty where the text begins with none.
[[nodiscard]] std::string schemeOf(std::string_view url);

/// "scheme://authority" of an absolute URL, in lower case; the empty text of any other.
[[nodiscard]] std::string originOf(std::string_view url);

/// Whether the URL is absolute, http or https, with a host. Its characters may be any: engines do not escape them all.
[[nodiscard]] bool isWebUrl(std::string_view url) noexcept;

/// The same, and all its characters are legal: what may be asked for over HTTP.
[[nodiscard]] bool isLegalWebUrl(std::string_view url) noexcept;

/// Whether every character may stand somewhere in a URL, and every "%" goes on with two hexadecimal digits.
[[nodiscard]] bool hasLegalUrlCharacters(std::string_view text) noexcept;

/// Percent-escapes every byte that may stand nowhere in a URL; reserved characters and "%" stay.
[[nodiscard]] std::string percentEscaped(std::string_view text);

}  // namespace orbinel
