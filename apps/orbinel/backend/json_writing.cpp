#include "apps/orbinel/backend/json_writing.hpp"

#include <glib.h>

namespace orbinel::tool {

std::string validUtf8(std::string_view text) {
    gchar* valid = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
    std::string result(valid);
    g_free(valid);
    return result;
}

void writeText(JsonWriter& writer, std::string_view text) {
    const auto valid = validUtf8(text);
    writer.String(valid.data(), static_cast<rapidjson::SizeType>(valid.size()));
}

void writeMember(JsonWriter& writer, const char* name, std::string_view text) {
    writer.Key(name);
    writeText(writer, text);
}

void writeJson(JsonWriter& writer, std::string_view json) {
    writer.RawValue(json.data(), json.size(), rapidjson::kObjectType);
}

std::string errorBody(std::string_view sentence) {
    return jsonOf([&](JsonWriter& writer) {
        writer.StartObject();
        writeMember(writer, "error", sentence);
        writer.EndObject();
    });
}

std::string shortened(std::string_view text, std::size_t limit) {
    if (text.size() <= limit) return std::string(text);
    auto end = limit;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    return std::string(text.substr(0, end)) + " …";
}

std::string secondsNow() { return std::to_string(g_get_real_time() / G_USEC_PER_SEC); }

double now() { return static_cast<double>(g_get_real_time() / 1000) / 1000.0; }

}  // namespace orbinel::tool
