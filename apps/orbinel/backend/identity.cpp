#include "apps/orbinel/backend/identity.hpp"

#include <glib.h>

#include <algorithm>
#include <variant>
#include <vector>

#include "apps/orbinel/backend/answers.hpp"
#include "apps/orbinel/backend/summary.hpp"
#include "apps/orbinel/decode/json_text.hpp"

namespace orbinel::tool {
namespace {

std::string textMember(const rapidjson::Document& document, const char* name) {
    return PayloadReader(document).text(name);
}

std::string idOf(std::vector<std::string> identifiers) {
    std::sort(identifiers.begin(), identifiers.end());
    std::string joined;
    for (const auto& identifier : identifiers) joined += identifier + '\n';
    gchar* checksum =
        g_compute_checksum_for_data(G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(joined.data()), joined.size());
    std::string id(checksum, 32);
    g_free(checksum);
    for (const std::size_t at : {20u, 16u, 12u, 8u}) id.insert(at, 1, '-');
    return id;
}

std::vector<std::string> identifiersOf(const rapidjson::Document& payload) {
    std::vector<std::string> found;
    if (!payload.IsObject() || !payload.HasMember("identifiers")) return found;
    const auto& identifiers = payload["identifiers"];
    if (!identifiers.IsObject()) return found;
    for (const auto& entry : identifiers.GetObject()) {
        found.push_back(compactJson(entry.name) + '=' + compactJson(entry.value));
    }
    return found;
}

}  // namespace

std::string identityFor(std::string_view payload, std::string_view answerFile) {
    const auto answer = parseJson(answerFile);
    if (const auto* document = std::get_if<rapidjson::Document>(&answer)) {
        if (auto id = textMember(*document, "id"); !id.empty()) return id;
    }
    const auto request = parseJson(payload);
    if (const auto* document = std::get_if<rapidjson::Document>(&request)) {
        if (auto id = textMember(*document, "orbinel_id"); !id.empty()) return id;
        if (auto identifiers = identifiersOf(*document); !identifiers.empty()) return idOf(std::move(identifiers));
    }
    return freshUuid();
}

}  // namespace orbinel::tool
