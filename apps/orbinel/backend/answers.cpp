#include "apps/orbinel/backend/answers.hpp"

#include <glib.h>

#include <cstdio>
#include <system_error>
#include <variant>

#include "apps/orbinel/backend/uuid.hpp"
#include "apps/orbinel/decode/json_text.hpp"

namespace orbinel::tool {
namespace {

constexpr std::size_t maxEdits = 200;
constexpr std::size_t maxEdited = 1'000'000;  // bytes
constexpr std::size_t versionLength = 16;     // hexadecimal digits, enough to tell texts apart

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

/// Nothing where there is no such file, or one that cannot be used, which is told.
std::optional<std::string> validFileText(const std::filesystem::path& file) {
    gchar* content = nullptr;
    gsize size = 0;
    GError* error = nullptr;
    if (!g_file_get_contents(file.c_str(), &content, &size, &error)) {
        if (!g_error_matches(error, G_FILE_ERROR, G_FILE_ERROR_NOENT)) complain(file, error->message);
        g_error_free(error);
        return std::nullopt;
    }
    std::string text(content, size);
    g_free(content);
    const auto parsed = parseJson(text);
    if (const auto* fault = std::get_if<JsonFault>(&parsed)) {
        complain(file, describeFault(*fault, text));
        return std::nullopt;
    }
    return text;
}

}  // namespace

std::optional<std::string> Answers::editedText(const Endpoint& endpoint, const std::string& partner) const {
    const MutexLock lock(mutex_);
    const auto found = edited_.find({partner, std::string(endpoint.answerFile)});
    return found == edited_.end() ? std::nullopt : std::optional(found->second);
}

Answers::Source Answers::sourceFor(const Endpoint& endpoint, const std::string& partner) const {
    const auto fromFile = [&](const std::filesystem::path& file) {
        auto text = validFileText(file);
        return text ? Source{std::move(*text), Origin::file}
                    : Source{std::string(endpoint.neutralAnswer), Origin::builtIn};
    };
    if (isPartnerName(partner)) {
        if (auto text = editedText(endpoint, partner)) return {std::move(*text), Origin::edited};
        const auto own = directory_ / partner / endpoint.answerFile;
        std::error_code ignored;
        if (std::filesystem::exists(own, ignored)) return fromFile(own);
    }
    if (auto text = editedText(endpoint, {})) return {std::move(*text), Origin::edited};
    return fromFile(directory_ / endpoint.answerFile);
}

std::string Answers::bodyFor(const Endpoint& endpoint, const std::string& partner, std::string_view origin) const {
    auto text = sourceFor(endpoint, partner).text;
    // In the text rather than in its strings: neither value holds a character that JSON escapes.
    replaceAll(text, "${origin}", origin);
    if (text.find("${uuid}") != std::string::npos) replaceAll(text, "${uuid}", freshUuid());
    return text;
}

std::string Answers::Source::version() const {
    gchar* sum = g_compute_checksum_for_string(G_CHECKSUM_SHA256, text.data(), static_cast<gssize>(text.size()));
    std::string version(sum, versionLength);
    g_free(sum);
    return version;
}

/// Files are read without the lock: where somebody else made a change meanwhile, all is looked at again.
template <typename Change>
Answers::Outcome Answers::change(const Endpoint& endpoint, const std::string& partner, const std::string& basedOn,
                                 const Change& change) {
    const auto changesSoFar = [this] {
        const MutexLock lock(mutex_);
        return changes_;
    };
    while (true) {
        const auto before = changesSoFar();
        if (!basedOn.empty() && sourceFor(endpoint, partner).version() != basedOn) {
            return {std::string(endpoint.answerFile) + " was changed elsewhere meanwhile.", true};
        }
        const MutexLock lock(mutex_);
        if (changes_ != before) continue;
        ++changes_;
        return {change(edited_), false};
    }
}

Answers::Outcome Answers::edit(const Endpoint& endpoint, const std::string& partner, const std::string& text,
                               const std::string& basedOn) {
    if (!partner.empty() && !isPartnerName(partner)) {
        return {"A partner's name is made of a-z, 0-9 and _, begins with no _ and has 2 to 64 characters.", false};
    }
    if (text.size() > maxEdited) return {"An edited answer is at most 1 MB long.", false};
    const auto parsed = parseJson(text);
    if (const auto* fault = std::get_if<JsonFault>(&parsed)) {
        return {"The answer is not JSON, " + describeFault(*fault, text) + ".", false};
    }
    return change(endpoint, partner, basedOn, [&](Edits& edited) -> std::string {
        const Place place{partner, endpoint.answerFile};
        if (edited.size() >= maxEdits && !edited.contains(place)) return "Too many answers are edited.";
        edited[place] = text;
        return {};
    });
}

Answers::Outcome Answers::takeBack(const Endpoint& endpoint, const std::string& partner, const std::string& basedOn) {
    return change(endpoint, partner, basedOn, [&](Edits& edited) -> std::string {
        edited.erase({partner, std::string(endpoint.answerFile)});
        return {};
    });
}

}  // namespace orbinel::tool
