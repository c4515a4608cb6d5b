#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "orbinel/value.hpp"

namespace orbinel::tool {

/// `{"$callback": NAME}`: a callback whose calls are traced under the name.
struct CallbackName {
    std::string name;
};

/// `{"$ref": NAME}`: what an earlier step kept under the name.
struct Reference {
    std::string name;
};

/// A list in which each element is a reference or nothing.
using References = std::vector<std::optional<Reference>>;

/// One argument of an operation as the scenario gives it.
using Argument = std::variant<Value, CallbackName, Reference, References>;

/// Turns the JSON of a scenario into values: whole numbers that fit become 32-bit integers, and the special one-key
/// objects ($int64, $double, $date, $bytes, $repeat, $ref, $callback) become what they stand for. Throws `Unusable`.
class ArgumentReader {
public:
    /// A whole argument: null at its own position is an absent value.
    [[nodiscard]] Argument argument(const Value& json);

    /// A list of references, where null is nothing.
    [[nodiscard]] static References references(const Value& json, std::string_view what);

    /// A value that cannot be a callback or a reference; null is an absent value.
    [[nodiscard]] Value value(const Value& json);

    /// The same for what lies inside a container, where null is the null marker.
    [[nodiscard]] Value element(const Value& json);

private:
    [[nodiscard]] Value special(const std::string& key, const Value& content);
    [[nodiscard]] Value repeated(const Value& content);

    std::size_t repeatedBytes_ = 0;  // by $repeat so far, in the whole scenario
};

}  // namespace orbinel::tool
