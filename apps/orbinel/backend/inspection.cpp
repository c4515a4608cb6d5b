#include "apps/orbinel/backend/inspection.hpp"

#include <array>
#include <cstdio>
#include <ctime>

#include "apps/orbinel/backend/json_writing.hpp"

namespace orbinel::tool {
namespace {

void writeHeaders(JsonWriter& writer, const Incoming& request) {
    writer.Key("headers");
    writer.StartObject();
    for (const auto& [name, value] : request.headers) writeMember(writer, validUtf8(name).c_str(), value);
    writer.EndObject();
}

void writePayload(JsonWriter& writer, const std::string& payload) {
    writer.Key("payload");
    if (payload.empty()) {
        writer.Null();
    } else {
        writeJson(writer, payload);
    }
}

void writeRequest(JsonWriter& writer, const ReceivedRequest& received, BodyWanted body) {
    writer.StartObject();
    writer.Key("id");
    writer.Uint64(received.id);
    writer.Key("at");
    writer.Double(received.at);
    writeMember(writer, "method", received.request.method);
    writeMember(writer, "path", received.request.path);
    if (!received.request.query.empty()) writeMember(writer, "query", received.request.query);
    writer.Key("status");
    writer.Int(received.status);
    writeMember(writer, "partner", received.reading.partner);
    writeMember(writer, "summary", received.reading.summary);
    if (!received.reading.problem.empty()) writeMember(writer, "problem", received.reading.problem);
    writeHeaders(writer, received.request);
    writer.Key("size");
    writer.Uint64(received.request.body.size());
    if (body == BodyWanted::yes) writeMember(writer, "body", received.request.body);
    writePayload(writer, received.reading.payload);
    writeMember(writer, "answer", received.answer);
    writer.EndObject();
}

std::string localTime(double at) {
    const auto seconds = static_cast<std::time_t>(at);
    std::tm parts{};
    localtime_r(&seconds, &parts);
    std::array<char, 16> text{};
    std::strftime(text.data(), text.size(), "%H:%M:%S", &parts);
    return text.data();
}

std::string sizeText(std::size_t bytes) {
    if (bytes < 1000) return std::to_string(bytes) + " B";
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f KB", static_cast<double>(bytes) / 1000.0);
    return text.data();
}

std::string printable(std::string_view text) {
    std::string result = validUtf8(text);
    for (char& c : result) {
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = '?';
    }
    return result;
}

}  // namespace

std::string requestsAsJson(const std::vector<std::shared_ptr<const ReceivedRequest>>& requests, BodyWanted body) {
    return jsonOf([&](JsonWriter& writer) {
        writer.StartArray();
        for (const auto& request : requests) writeRequest(writer, *request, body);
        writer.EndArray();
    });
}

std::string requestAsLine(const ReceivedRequest& received) {
    const auto& reading = received.reading;
    std::string line = localTime(received.at) + "  " + received.request.method + ' ' + received.request.path;
    line += "  " + (reading.partner.empty() ? std::string("-") : reading.partner);
    if (!reading.summary.empty()) line += "  " + reading.summary;
    line += "  (" + sizeText(received.request.body.size()) + ')';
    if (received.status != 200) line += "  -> " + std::to_string(received.status);
    if (!reading.problem.empty()) line += "  ! " + reading.problem;
    return printable(line);
}

}  // namespace orbinel::tool
