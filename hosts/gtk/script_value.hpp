#pragma once

#include <jsc/jsc.h>

#include "orbinel/value.hpp"

namespace orbinel::hosts {

/// A value of a page's script as JSON would carry it: whole numbers that fit are 64-bit integers, null is the null
/// marker. Absent where it is nothing that JSON has, nests too deep, or is larger than a page has any business to send
/// (an object may be in it many times over, so that little from the page could become a lot).
[[nodiscard]] Value valueOfScript(JSCValue* script);

}  // namespace orbinel::hosts
