#include "apps/orbinel/backend/answers.hpp"

#include <glib.h>

#include <cstdio>
#include <memory>
#include <variant>

#include "apps/orbinel/decode/json_text.hpp"

namespace orbinel::tool {
namespace {

void replaceAll(std::string& text, std::string_view what, std::string_view with) {
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size())) {
        text.replace(at, what.size(), with);
    }
}

void complain(const std::filesystem::path& file, const std::string& clause) {
    // One call, so that sentences of several threads do not mix.
    const auto sentence = "orbinel backend: " + file.string() + " is not used, " + clause + ".\n";
    std::fputs(sentence.c_str(), stderr);
}

}  // namespace

std::string freshUuid() {
    gchar* text = g_uuid_string_random();
    std::string uuid(text);
    g_free(text);
    return uuid;
}

std::string Answers::fileText(const Endpoint& endpoint) const {
    const auto file = directory_ / endpoint.answerFile;
    gchar* content = nullptr;
    gsize size = 0;
    GError* error = nullptr;
    if (!g_file_get_contents(file.c_str(), &content, &size, &error)) {
        if (!g_error_matches(error, G_FILE_ERROR, G_FILE_ERROR_NOENT)) complain(file, error->message);
        g_error_free(error);
        return std::string(endpoint.neutralAnswer);
    }
    std::string text(content, size);
    g_free(content);
    const auto parsed = parseJson(text);
    if (const auto* fault = std::get_if<JsonFault>(&parsed)) {
        complain(file, describeFault(*fault, text));
        return std::string(endpoint.neutralAnswer);
    }
    return text;
}

std::string Answers::bodyFor(const Endpoint& endpoint, std::string_view origin) const {
    auto text = fileText(endpoint);
    // In the text rather than in its strings: neither value holds a character that JSON escapes.
    replaceAll(text, "${origin}", origin);
    if (text.find("${uuid}") != std::string::npos) replaceAll(text, "${uuid}", freshUuid());
    return text;
}

}  // namespace orbinel::tool
