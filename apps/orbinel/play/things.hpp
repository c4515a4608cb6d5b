#pragma once

#include <memory>
#include <string_view>
#include <variant>

#include "orbinel/event.hpp"
#include "orbinel/identifiers.hpp"
#include "orbinel/product.hpp"
#include "orbinel/user.hpp"
#include "orbinel/value.hpp"

namespace orbinel::tool {

/// What callbacks are registered for. It does nothing but live.
struct Target {};

/// What an operation gives, and what a scenario can keep under a name.
enum class ThingKind { nothing, text, boolean, number, array, dictionary, event, user, identifiers, product, target };

/// Nothing, a value, or an object (empty once it has gone).
using Thing =
    std::variant<std::monostate, Value, std::shared_ptr<OrbinelEvent>, std::shared_ptr<OrbinelUser>,
                 std::shared_ptr<OrbinelIdentifiers>, std::shared_ptr<OrbinelProduct>, std::shared_ptr<Target>>;

/// The kind as a sentence names it, with its article.
[[nodiscard]] std::string_view inWords(ThingKind kind);

}  // namespace orbinel::tool
