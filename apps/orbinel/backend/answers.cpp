#include "apps/orbinel/backend/answers.hpp"

#include <glib.h>

#include <cstdio>
#include <system_error>
#include <variant>

#include "apps/orbinel/backend/uuid.hpp"
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

/// Partner names as the API allows them: none of them leads out of the directory.
bool isPartnerName(const std::string& text) {
    return text.size() > 1 && text.size() <= 64 && text.front() != '_' &&
           text.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_") == std::string::npos;
}

std::string validFileText(const std::filesystem::path& file, std::string_view neutralAnswer) {
    gchar* content = nullptr;
    gsize size = 0;
    GError* error = nullptr;
    if (!g_file_get_contents(file.c_str(), &content, &size, &error)) {
        if (!g_error_matches(error, G_FILE_ERROR, G_FILE_ERROR_NOENT)) complain(file, error->message);
        g_error_free(error);
        return std::string(neutralAnswer);
    }
    std::string text(content, size);
    g_free(content);
    const auto parsed = parseJson(text);
    if (const auto* fault = std::get_if<JsonFault>(&parsed)) {
        complain(file, describeFault(*fault, text));
        return std::string(neutralAnswer);
    }
    return text;
}

}  // namespace

std::filesystem::path Answers::fileOf(const Endpoint& endpoint, const std::string& partner) const {
    std::error_code ignored;
    if (isPartnerName(partner)) {
        auto own = directory_ / partner / endpoint.answerFile;
        if (std::filesystem::exists(own, ignored)) return own;
    }
    return directory_ / endpoint.answerFile;
}

std::string Answers::bodyFor(const Endpoint& endpoint, const std::string& partner, std::string_view origin) const {
    auto text = validFileText(fileOf(endpoint, partner), endpoint.neutralAnswer);
    // In the text rather than in its strings: neither value holds a character that JSON escapes.
    replaceAll(text, "${origin}", origin);
    if (text.find("${uuid}") != std::string::npos) replaceAll(text, "${uuid}", freshUuid());
    return text;
}

}  // namespace orbinel::tool
