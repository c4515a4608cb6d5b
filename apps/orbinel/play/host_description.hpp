#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orbinel/value.hpp"

namespace orbinel::tool {

/// The delegates of a scenario's application: the operations for which it has handlers of its own.
struct HostDescription {
    std::vector<std::string> application;                   // those of its scene are among them
    std::optional<std::vector<std::string>> notifications;  // absent: the application's delegate is told of them too
    bool setTwice = false;                                  // the application sets its delegate a second time
    bool isHybrid = false;                                  // a cross-platform wrapper runs the library
};

/// Throws `Unusable`.
[[nodiscard]] HostDescription readHost(const Value& json);

}  // namespace orbinel::tool
