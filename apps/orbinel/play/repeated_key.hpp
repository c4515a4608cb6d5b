#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace orbinel::tool {

struct RepeatedKey {
    std::string key;
    std::size_t end = 0;  // the byte behind its second place
};

/// The first key that an object of the JSON text has twice: whoever wrote it meant both, and the first would be lost.
[[nodiscard]] std::optional<RepeatedKey> repeatedKey(std::string_view json);

}  // namespace orbinel::tool
