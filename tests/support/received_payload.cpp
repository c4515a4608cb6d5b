#include "support/received_payload.hpp"

#include <variant>

#include "base/reports.hpp"
#include "hosts/common/glib_base64.hpp"
#include "hosts/common/rapidjson_json.hpp"
#include "orbinel/headless/headless_console.hpp"
#include "session/encryptor.hpp"

namespace orbinel::testing {

namespace {

Dictionary parsed(const std::string& json) {
    const auto outcome = hosts::RapidJson().parse(json);
    const auto* value = std::get_if<Value>(&outcome);
    return value != nullptr && value->ifDictionary() != nullptr ? *value->ifDictionary() : Dictionary();
}

}  // namespace

Dictionary payloadOf(const std::string& body, const std::string& timestamp) {
    auto content = parsed(body);
    const auto* scrambled = content["payload"].ifString();
    if (scrambled == nullptr) return content;
    headless::HeadlessConsole console;
    Reports silent(console);
    const hosts::GlibBase64 base64;
    const OrbinelEncryptor encryptor(silent, base64);
    return parsed(encryptor.decryptPayload(*scrambled, timestamp).value_or(""));
}

}  // namespace orbinel::testing
