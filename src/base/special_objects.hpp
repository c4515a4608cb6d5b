#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "orbinel/value.hpp"

/// How values that JSON does not have stand in JSON all the same: as objects of one key.
///
/// {"$int64": n}; {"$double": x}, also with "nan", "inf" and "-inf"; {"$date": seconds since 1970}; {"$bytes": HEX}, a
/// text of exactly these bytes, which need not be UTF-8.
namespace orbinel {

/// What the content of a special object is not: a clause on one line, without a capital letter or an end mark.
struct WrongSpecialObject : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The only entry of a dictionary whose key begins with "$"; nullptr for every other value.
[[nodiscard]] const Dictionary::Entry* onlySpecialEntry(const Value& json) noexcept;

/// What the object of that one key stands for; nothing where no special object has that key. Throws
/// `WrongSpecialObject`.
[[nodiscard]] std::optional<Value> specialValue(std::string_view key, const Value& content);

/// A number as people write it: a 32-bit integer where it fits.
[[nodiscard]] Value narrowed(std::int64_t number) noexcept;

/// The value as JSON can hold it, with special objects for what JSON does not have and null for what is absent. What
/// nests deeper than `depth` is left out, with a text in its place.
[[nodiscard]] Value withSpecialObjects(const Value& value, int depth);

}  // namespace orbinel
