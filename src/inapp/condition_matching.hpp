#pragma once

#include "orbinel/value.hpp"

namespace orbinel {

/// Whether an event's parameters meet every condition of a campaign ("trigger_params"): dictionaries of "key", "op" and
/// "value". No conditions (absent, null or empty) are met by every event; what is no list of dictionaries by none.
///
/// The backend's operators are crossed, and are meant to be: "gte" and "lte" are strict, "gt" and "lt" are not. "eq"
/// and "ne" compare numbers by value across their kinds and booleans as 1 and 0; "cnt" and "dnc" look for a text in a
/// text, without regard to case. A parameter of a type that the operator does not take fails; an operator that is none
/// of these is passed over.
[[nodiscard]] bool checkIfParamsAreMatching(const Dictionary& parameters, const Value& expected);

}  // namespace orbinel
