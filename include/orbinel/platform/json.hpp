#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "orbinel/value.hpp"

namespace orbinel::platform {

enum class JsonStyle {
    compact,        // no white space, keys in the dictionary's order
    compactSorted,  // no white space, keys sorted by their bytes
    pretty,         // indented by two spaces, keys in the dictionary's order
};

struct JsonFailure {
    std::string reason;      // one sentence for a log
    std::size_t offset = 0;  // in bytes from the start of the text
};

using JsonOutcome = std::variant<Value, JsonFailure>;

/// Reads and writes JSON (RFC 8259).
///
/// Threads: callable from any thread; no state. Failure: as documented; nothing is thrown.
class Json {
public:
    virtual ~Json() = default;

    /// Reads one JSON value of any kind, scalars included. Whole numbers that fit become 64-bit integers, every other
    /// number a double; null becomes the null marker. Of equal keys the last one counts. Containers nested deeper than
    /// `maximumValueDepth`, text that is not valid UTF-8, numbers beyond a double and anything after the value are
    /// failures. Reading takes no stack that grows with the text.
    [[nodiscard]] virtual JsonOutcome parse(std::string_view text) const noexcept = 0;

    /// Writes a value. Whole doubles up to 2^53 are written without a fraction, other doubles with the fewest digits
    /// that read back the same; bytes that are not valid UTF-8 are written as U+FFFD. Nothing where the value holds
    /// what JSON cannot (a date, an absent value, NaN, an infinity) or nests deeper than `maximumValueDepth`.
    [[nodiscard]] virtual std::optional<std::string> serialise(const Value& value, JsonStyle style) const noexcept = 0;
    [[nodiscard]] virtual std::optional<std::string> serialise(const Dictionary& dictionary,
                                                               JsonStyle style) const noexcept = 0;
};

}  // namespace orbinel::platform
