#pragma once

#include <string>

namespace orbinel::tool {

/// Something that the backend remembers of its requests and shows to tools. Threads: any.
class Inspectable {
public:
    virtual ~Inspectable() = default;

    /// A JSON list, oldest first.
    [[nodiscard]] virtual std::string asJson() const = 0;
    /// Forgets everything.
    virtual void clear() = 0;
};

}  // namespace orbinel::tool
