#include "apps/orbinel/play/pretty_entry.hpp"

#include <array>
#include <cstdio>

#include "hosts/common/rapidjson_json.hpp"

namespace orbinel::tool {

namespace {

std::string json(const Value& value, platform::JsonStyle style) {
    return hosts::RapidJson().serialise(value, style).value_or("?");
}

std::string compact(const Value& value) { return json(value, platform::JsonStyle::compact); }

std::string indented(const Value& value) {
    std::string text = "             " + json(value, platform::JsonStyle::pretty);
    for (auto end = text.find('\n'); end != std::string::npos; end = text.find('\n', end + 1)) {
        text.insert(end + 1, "             ");
    }
    return text + '\n';
}

std::string describeRequest(const Dictionary& request) {
    auto text = "-> request " + compact(request["id"]) + "  " + request["method"].stringOrEmpty() + ' ' +
                request["url"].stringOrEmpty() + '\n';
    if (!request["payload"].isNull()) text += indented(request["payload"]);
    return text;
}

std::string describeResponse(const Dictionary& response) {
    const auto text = "<- response " + compact(response["id"]) + "  ";
    if (const auto* error = response.find("error")) return text + error->stringOrEmpty() + '\n';
    return text + compact(response["status"]) + ' ' + response["body"].stringOrEmpty() + '\n';
}

std::string describe(const Dictionary& entry) {
    if (const auto* request = entry["request"].ifDictionary()) return describeRequest(*request);
    if (const auto* response = entry["response"].ifDictionary()) return describeResponse(*response);
    if (const auto* line = entry["console"].ifString()) return "console  " + *line + '\n';
    if (entry.contains("state")) return "state " + entry["state"].stringOrEmpty() + '\n' + indented(entry["value"]);
    std::string text;
    for (const auto& [key, value] : entry) {
        if (key != "at") text += (text.empty() ? "" : "  ") + key + ' ' + compact(value);
    }
    return text + '\n';
}

}  // namespace

std::string prettyEntry(const Dictionary& entry, double start) {
    std::array<char, 64> time{};
    std::snprintf(time.data(), time.size(), "%+11.3f  ", entry["at"].number().value_or(start) - start);
    return time.data() + describe(entry);
}

}  // namespace orbinel::tool
