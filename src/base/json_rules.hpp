#pragma once

#include "orbinel/value.hpp"

namespace orbinel {

/// Whether a dictionary can be sent as JSON to its last leaf: nothing in it is a date, an absent value, NaN or an
/// infinity, and it nests no deeper than `maximumValueDepth`.
[[nodiscard]] bool isValidJsonDeeply(const Dictionary& dictionary) noexcept;
[[nodiscard]] bool isValidJsonDeeply(const Value& value) noexcept;

/// Removes what JSON cannot hold, at any depth: NaN and infinities, dates, absent values, and containers beyond
/// `maximumValueDepth`. Where the dictionary will stand inside others, the caller gives the depth that is left for it.
void sanitizeDictionary(Dictionary& dictionary, int depth = maximumValueDepth);
/// The same for an array that stands alone; so far dictionaries do.
void sanitizeArray(Array& array);

}  // namespace orbinel
