#pragma once

#include <string>
#include <string_view>

namespace orbinel {

/// The text with its capital letters lower, independent of any locale: those of the Latin (of Europe and Vietnam),
/// Greek, Cyrillic and Armenian alphabets; all other characters, and bytes that are not UTF-8, stay as they are.
[[nodiscard]] std::string lowerCased(std::string_view text);

}  // namespace orbinel
