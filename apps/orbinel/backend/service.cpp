#include "apps/orbinel/backend/service.hpp"

#include <utility>
#include <variant>

#include "apps/orbinel/backend/json_writing.hpp"
#include "apps/orbinel/backend/messages.hpp"
#include "apps/orbinel/backend/payload_reader.hpp"
#include "apps/orbinel/backend/recommendations.hpp"
#include "apps/orbinel/decode/json_text.hpp"
#include "apps/orbinel/decode/scrambling.hpp"

namespace orbinel::tool {
namespace {

constexpr const char* noToken = "no token: the Authorization header is not \"Bearer TOKEN\"";
constexpr const char* noDevice = "no device: \"target\" has no \"udid\"";

rapidjson::Document documentOf(const std::string& json) {
    auto parsed = parseJson(json);
    auto* document = std::get_if<rapidjson::Document>(&parsed);
    return document == nullptr ? rapidjson::Document() : std::move(*document);
}

std::string forcedId(const std::string& file) {
    const auto document = documentOf(file);
    return PayloadReader(document).text("id");
}

void addMember(std::string& note, const char* name, std::optional<bool> consent) {
    if (!consent) return;
    note += (note.empty() ? "" : ", ") + std::string(name) + (*consent ? " yes" : " no");
}

}  // namespace

Reply Service::reply(const Endpoint& endpoint, const Incoming& request, const Reading& reading,
                     std::string_view origin) {
    const auto payload = documentOf(reading.payload);
    return (this->*endpoint.reply)({request, payload, answers_.bodyFor(endpoint, reading.partner, origin)});
}

Inspectable* Service::inspectable(std::string_view name) {
    if (name == "identities") return &identities_;
    if (name == "consents") return &consents_;
    if (name == "wizard") return &wizard_;
    if (name == "logs") return &logs_;
    return nullptr;
}

Reply Service::answerFromFile(const ServiceCall& call) { return {200, call.file, {}, {}, {}}; }

Reply Service::getIdentity(const ServiceCall& call) {
    auto id = forcedId(call.file);
    if (id.empty()) id = identities_.idFor(call.payload);
    const auto timestamp = secondsNow();
    return {200, scramble(id, timestamp), {{"ts", timestamp}, {"Content-Type", "text/plain"}}, "answered " + id, {}};
}

Reply Service::setConsent(const ServiceCall& call) {
    const auto device = deviceOf(call.payload);
    if (device.empty()) return refusal(400, noDevice);
    consents_.set(device, call.payload);
    return answerFromFile(call);
}

Reply Service::getConsent(const ServiceCall& call) {
    const auto device = deviceOf(call.payload);
    if (device.empty()) return refusal(400, noDevice);
    const auto posted = consents_.get(device);
    std::string note;
    addMember(note, "gdpr", posted.gdpr);
    addMember(note, "mobile gdpr", posted.mobile);
    return {200, consentAnswer(posted, call.file), {}, note.empty() ? "nothing posted yet" : "posted " + note, {}};
}

Reply Service::getMessages(const ServiceCall& call) {
    auto selected = selectMessages(call.payload, call.file);
    return {200, std::move(selected.json), {}, std::move(selected.note), {}};
}

Reply Service::takeLogs(const ServiceCall& call) {
    logs_.add(call.payload);
    return answerFromFile(call);
}

/// Refuses a request without a token, and one that `act` finds no open connection for.
template <typename Act>
Reply Service::withToken(const ServiceCall& call, Act&& act) {
    const auto token = tokenOf(call.request.header("Authorization"));
    if (token.empty()) return refusal(401, noToken);
    if (!act(token)) return refusal(404, "no connection is open under this token");
    auto reply = answerFromFile(call);
    reply.note = "token " + token;
    return reply;
}

Reply Service::connectWizard(const ServiceCall& call) {
    return withToken(call, [&](const std::string& token) {
        wizard_.connect(token, call.payload);
        return true;
    });
}

Reply Service::disconnectWizard(const ServiceCall& call) {
    return withToken(call, [&](const std::string& token) { return wizard_.disconnect(token); });
}

Reply Service::feedWizard(const ServiceCall& call) {
    return withToken(call, [&](const std::string& token) { return wizard_.feed(token, call.payload); });
}

Reply Service::getRecommendations(const ServiceCall& call) { return recommend(call.request.query, call.file); }

}  // namespace orbinel::tool
