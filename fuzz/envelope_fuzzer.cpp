#include <string>

#include "apps/orbinel/decode/json_text.hpp"
#include "apps/orbinel/decode/scrambling.hpp"
#include "base/utf8.hpp"
#include "fuzz/input.hpp"
#include "hosts/common/glib_base64.hpp"
#include "session/encryptor.hpp"

namespace {

using orbinel::fuzz::require;

/// The text, where it is one that the library would take.
std::optional<std::string> textByTheTool(std::string_view scrambled, std::string_view timestamp) {
    auto plain = orbinel::tool::unscramble(scrambled, timestamp);
    auto* text = std::get_if<std::string>(&plain);
    return text != nullptr && orbinel::isValidUtf8(*text) ? std::optional(std::move(*text)) : std::nullopt;
}

}  // namespace

// With whatever time stamp (the first line), whatever text (the rest) comes out of its envelope as it went in; read as
// an envelope itself, it is the same to the library and to the tool, or nothing to both.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto text = orbinel::fuzz::textOf(data, size);
    const auto timestamp = text.substr(0, text.find('\n'));
    text.remove_prefix(timestamp.size() < text.size() ? timestamp.size() + 1 : text.size());
    if (text.empty()) return 0;

    orbinel::fuzz::NoConsole console;
    orbinel::Reports reports(console);
    const orbinel::hosts::GlibBase64 base64;
    const orbinel::OrbinelEncryptor encryptor(reports, base64);
    const auto envelope = encryptor.getEncryptedPayloadForData(text, timestamp);
    const auto& scrambled = envelope["payload"].stringOrEmpty();
    require(scrambled == orbinel::tool::scramble(text, timestamp));
    require(std::get<std::string>(orbinel::tool::unscramble(scrambled, timestamp)) == text);
    const auto plain = encryptor.decryptPayload(scrambled, timestamp);
    require(plain == (orbinel::isValidUtf8(text) ? std::optional<std::string>(text) : std::nullopt));

    require(encryptor.decryptPayload(text, timestamp) == textByTheTool(text, timestamp));
    const auto pretty = orbinel::tool::prettyJson(text);
    if (const auto* fault = std::get_if<orbinel::tool::JsonFault>(&pretty)) {
        require(!orbinel::tool::describeFault(*fault, text).empty());
    } else {
        const auto& indented = std::get<std::string>(pretty);
        require(std::get<std::string>(orbinel::tool::prettyJson(indented)) == indented);
    }
    return 0;
}
