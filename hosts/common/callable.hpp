#pragma once

#include <functional>
#include <utility>

namespace orbinel::hosts {

/// The function; one that does nothing where it is empty. For hosts, whose callers may leave completions out.
template <typename... Arguments>
[[nodiscard]] std::function<void(Arguments...)> callable(std::function<void(Arguments...)> function) {
    if (function) return function;
    return [](const Arguments&...) {};
}

}  // namespace orbinel::hosts
