#pragma once

#include <functional>
#include <utility>

namespace orbinel::hosts {

/// The completion; one that does nothing where it is empty. For hosts, whose callers may leave completions out.
template <typename... Arguments>
[[nodiscard]] std::function<void(Arguments...)> callable(std::function<void(Arguments...)> completion) {
    if (completion) return completion;
    return [](const Arguments&...) {};
}

}  // namespace orbinel::hosts
