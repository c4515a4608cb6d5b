#pragma once

#include <functional>

#include "apps/orbinel/play/played_page.hpp"
#include "orbinel/value.hpp"

namespace orbinel::tool {

/// One thing that the page of a message or the person does, read and checked.
using PageAction = std::function<void(PlayedPage&)>;

/// Reads the object of a `template` step. Throws `Unusable` for what is none.
[[nodiscard]] PageAction readPageAction(const Value& json);

/// The URL by which a page asks for these actions, as "encodeURIComponent" of its JSON writes it.
[[nodiscard]] std::string bridgeUrl(const Value& actions);

}  // namespace orbinel::tool
