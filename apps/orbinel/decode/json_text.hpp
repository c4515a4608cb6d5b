#pragma once

#include <rapidjson/document.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

namespace orbinel::tool {

/// The deepest nesting of lists and objects that the tool reads. RapidJSON writes by recursion: without a bound a body
/// of a million brackets would end the process.
inline constexpr int maxJsonDepth = 512;

struct JsonFault {
    std::string reason;      // a clause without an end mark, such as "Missing a comma or } after an object member."
    std::size_t offset = 0;  // bytes from the start of the text
};

/// Reads one JSON value of any kind. Text that is not UTF-8, holds a NUL byte or is nested too deeply is a fault.
[[nodiscard]] std::variant<rapidjson::Document, JsonFault> parseJson(std::string_view text);

/// The same check, giving the text indented. Numbers keep the digits that they were written with.
[[nodiscard]] std::variant<std::string, JsonFault> prettyJson(std::string_view text);

/// The value on one line.
[[nodiscard]] std::string compactJson(const rapidjson::Value& value);

/// Where and what, for a person with an editor: "line 3, offset 41: Missing a colon after a name of object member".
[[nodiscard]] std::string describeFault(const JsonFault& fault, std::string_view text);

}  // namespace orbinel::tool
