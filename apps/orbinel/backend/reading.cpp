#include "apps/orbinel/backend/reading.hpp"

#include <glib.h>

#include <algorithm>
#include <optional>
#include <variant>

#include "apps/orbinel/backend/endpoints.hpp"
#include "apps/orbinel/backend/json_writing.hpp"
#include "apps/orbinel/backend/payload_reader.hpp"
#include "apps/orbinel/decode/json_text.hpp"
#include "apps/orbinel/decode/scrambling.hpp"

namespace orbinel::tool {
namespace {

constexpr std::size_t maxPartner = 80;  // bytes; a name in a header is bounded by the HTTP library

using Payload = std::variant<rapidjson::Document, Failure>;

void note(Reading& reading, const std::string& problem) {
    if (reading.problem.empty()) reading.problem = problem;
}

Payload parsePayload(std::string_view text, const char* subject) {
    if (text.empty()) return Failure{std::string(subject) + " is empty"};
    auto parsed = parseJson(text);
    if (const auto* fault = std::get_if<JsonFault>(&parsed)) {
        return Failure{std::string(subject) + " is not JSON, " + describeFault(*fault, text)};
    }
    return std::get<rapidjson::Document>(std::move(parsed));
}

Payload openEnvelope(const rapidjson::Document& envelope, const Incoming& request) {
    const auto& text = envelope["payload"];
    if (!text.IsString()) return Failure{"\"payload\" is not a text"};
    const auto* timestamp = request.header("ts");
    auto plain = unscramble({text.GetString(), text.GetStringLength()}, timestamp ? *timestamp : std::string());
    if (auto* failure = std::get_if<Failure>(&plain)) return std::move(*failure);
    return parsePayload(std::get<std::string>(plain), "the unscrambled payload");
}

Payload readPayload(const Endpoint& endpoint, const Incoming& request, Reading& reading) {
    auto body = parsePayload(request.body, "the body");
    auto* document = std::get_if<rapidjson::Document>(&body);
    if (endpoint.form == BodyForm::plain || document == nullptr) return body;
    if (document->IsObject() && document->HasMember("payload")) return openEnvelope(*document, request);
    if (endpoint.form != BodyForm::envelopeOrPlain || !document->IsObject()) {
        return Failure{"the body is no envelope: it has no \"payload\""};
    }
    reading.summary = "plain";
    return body;
}

void checkTimestamp(const std::string& timestamp, Reading& reading) {
    const bool digits = !timestamp.empty() &&
                        std::all_of(timestamp.begin(), timestamp.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (!digits) note(reading, "the ts header \"" + timestamp + "\" is not a number of seconds");
}

void checkHeaders(const Endpoint& endpoint, const Incoming& request, Reading& reading) {
    for (const std::string_view name : {endpoint.requiredHeader, std::string_view("X-Requested-With")}) {
        if (!name.empty() && request.header(name) == nullptr) note(reading, "no " + std::string(name) + " header");
    }
    if (endpoint.form == BodyForm::none) return;
    if (const auto* timestamp = request.header("ts")) checkTimestamp(*timestamp, reading);
    const auto* type = request.header("Content-Type");
    if (type == nullptr || !type->starts_with("application/json")) {
        note(reading, "Content-Type is not application/json");
    }
}

std::string partnerOf(const Incoming& request, const rapidjson::Document* payload) {
    if (const auto* header = request.header("X-Requested-With")) return *header;
    if (payload == nullptr) return {};
    PayloadReader reader(*payload);
    const auto name = reader.text("partner_name");
    return shortened(name.empty() ? reader.text("partner") : name, maxPartner);
}

std::string refusalOf(const Incoming& request) {
    if (const auto* endpoint = findEndpoint(request.path)) {
        return "this path is reached by " + std::string(endpoint->method()) + ", not by " + request.method;
    }
    if (request.path == "/api/logging/sdk/v2") return "unknown path: this one has two slashes, /api//logging/sdk/v2";
    return "unknown path";
}

void readBody(const Endpoint& endpoint, const Incoming& request, Reading& reading) {
    auto payload = readPayload(endpoint, request, reading);
    const auto* document = std::get_if<rapidjson::Document>(&payload);
    reading.partner = partnerOf(request, document);
    if (document == nullptr) {
        reading.unreadableEnvelope = endpoint.form != BodyForm::plain;
        note(reading, std::get<Failure>(payload).clause);
    } else {
        reading.payload = compactJson(*document);
        PayloadReader members(*document);
        const auto summary = endpoint.summarise(members);
        if (!reading.summary.empty() && !summary.empty()) reading.summary += ", ";
        reading.summary += summary;
        if (!members.problem().empty()) note(reading, members.problem());
    }
}

}  // namespace

const std::string* Incoming::header(std::string_view name) const {
    const auto found = std::find_if(headers.begin(), headers.end(), [&](const auto& entry) {
        return g_ascii_strcasecmp(entry.first.c_str(), std::string(name).c_str()) == 0;
    });
    return found == headers.end() ? nullptr : &found->second;
}

Reading readRequest(const Incoming& request) {
    Reading reading;
    const auto* endpoint = findEndpoint(request.path);
    reading.partner = partnerOf(request, nullptr);
    if (endpoint == nullptr || request.method != endpoint->method()) {
        reading.problem = refusalOf(request);
        return reading;
    }
    reading.served = true;
    if (endpoint->form != BodyForm::none) readBody(*endpoint, request, reading);
    checkHeaders(*endpoint, request, reading);
    return reading;
}

}  // namespace orbinel::tool
