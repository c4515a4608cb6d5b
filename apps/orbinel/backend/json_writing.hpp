#pragma once

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <string>
#include <string_view>

namespace orbinel::tool {

using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;

/// The text with replacement characters where it is not UTF-8.
[[nodiscard]] std::string validUtf8(std::string_view text);

void writeText(JsonWriter& writer, std::string_view text);
void writeMember(JsonWriter& writer, const char* name, std::string_view text);
/// `json` must be valid.
void writeJson(JsonWriter& writer, std::string_view json);

/// The JSON that `write` makes of the contents.
template <typename Write, typename... Contents>
[[nodiscard]] std::string jsonOf(const Write& write, const Contents&... contents) {
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    write(writer, contents...);
    return {buffer.GetString(), buffer.GetSize()};
}

/// {"error": sentence}
[[nodiscard]] std::string errorBody(std::string_view sentence);

/// The beginning of a text, cut between two characters and marked by an ellipsis where it is longer than `limit` bytes.
[[nodiscard]] std::string shortened(std::string_view text, std::size_t limit);

/// Whole seconds since 1970, as the ts header has them.
[[nodiscard]] std::string secondsNow();

/// Seconds since 1970, by the millisecond.
[[nodiscard]] double now();

}  // namespace orbinel::tool
