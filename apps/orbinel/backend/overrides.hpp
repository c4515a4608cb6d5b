#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/mutex.hpp"

namespace orbinel::tool {

/// An answer that a tool or a test asked for in place of the usual one.
struct Override {
    int status = 200;
    std::optional<std::string> body;  // as it goes over the wire; absent: the usual one
    std::vector<std::pair<std::string, std::string>> headers;
    std::chrono::milliseconds delay{0};
    bool scrambled = false;          // the body is scrambled first, as the identity answer is
    std::optional<long long> times;  // answers left; absent: until it is removed
};

/// What overrides are in force, by path. Threads: any.
class Overrides {
public:
    /// Replaces an earlier one of the path.
    void set(const std::string& path, Override answer);
    void clear();

    /// The one for the next answer to `path`; counts it as used.
    [[nodiscard]] std::optional<Override> take(const std::string& path);

private:
    Mutex mutex_;
    std::map<std::string, Override> byPath_ ORBINEL_GUARDED_BY(mutex_);
};

/// Reads {"path", "status", "body"?, "times"?, "delay"?, "headers"?, "scramble"?}: a path with its override, or a
/// sentence that says what cannot be used.
struct OverrideRequest {
    std::string path;
    Override answer;
    std::string refusal;  // empty when all is well
};
[[nodiscard]] OverrideRequest readOverride(std::string_view json);

}  // namespace orbinel::tool
