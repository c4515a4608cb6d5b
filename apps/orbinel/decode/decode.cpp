#include "apps/orbinel/decode/decode.hpp"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string_view>
#include <variant>

#include "apps/orbinel/decode/json_text.hpp"
#include "apps/orbinel/decode/options.hpp"
#include "apps/orbinel/decode/scrambling.hpp"

namespace orbinel::tool {
namespace {

struct DecodeOptions {
    std::optional<std::string> timestamp;
    bool encode = false;
    bool text = false;
    std::string file = "-";
};

int fail(const std::string& clause) {
    std::cerr << "orbinel decode: " << clause << ".\n";
    return exitFailure;
}

std::variant<std::string, Failure> readAll(const std::string& file) {
    if (file == "-") return std::string(std::istreambuf_iterator<char>(std::cin), {});
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream content;
    // An empty file also sets the failure bit of `content`; a directory opens and then fails to be read.
    if (stream && stream.peek() != std::ifstream::traits_type::eof()) content << stream.rdbuf();
    if (!stream.is_open() || stream.bad()) return Failure{"cannot read " + file + ": " + std::strerror(errno)};
    return content.str();
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view space = " \t\r\n";
    const auto first = text.find_first_not_of(space);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(space) - first + 1);
}

/// The scrambled text of `input`: an envelope's "payload", or the input itself.
std::variant<std::string, Failure> scrambledText(std::string_view input) {
    if (input.empty()) return Failure{"the input is empty"};
    if (!input.starts_with('{')) return std::string(input);
    auto envelope = parseJson(input);
    if (const auto* fault = std::get_if<JsonFault>(&envelope)) {
        return Failure{"the envelope is not JSON, " + describeFault(*fault, input)};
    }
    const auto& object = std::get<rapidjson::Document>(envelope);
    const auto payload = object.FindMember("payload");
    if (payload == object.MemberEnd()) return Failure{"the envelope has no \"payload\""};
    if (!payload->value.IsString()) return Failure{"the envelope's \"payload\" is not a text"};
    return std::string(payload->value.GetString(), payload->value.GetStringLength());
}

int encode(std::string_view input, const std::string& timestamp) {
    if (const auto checked = prettyJson(input); const auto* fault = std::get_if<JsonFault>(&checked)) {
        return fail("the input is not JSON, " + describeFault(*fault, input));
    }
    // Base64 needs no escapes in JSON.
    std::cout << R"({"payload":")" << scramble(input, timestamp) << "\"}\n";
    return exitSuccess;
}

int decode(std::string_view input, const DecodeOptions& options) {
    auto scrambled = scrambledText(input);
    if (const auto* failure = std::get_if<Failure>(&scrambled)) return fail(failure->clause);
    auto plain = unscramble(std::get<std::string>(scrambled), *options.timestamp);
    if (const auto* failure = std::get_if<Failure>(&plain)) return fail(failure->clause);
    const auto& text = std::get<std::string>(plain);
    if (options.text) {
        std::cout << text << '\n';
        return exitSuccess;
    }
    const auto pretty = prettyJson(text);
    if (const auto* fault = std::get_if<JsonFault>(&pretty)) {
        return fail("what comes out with the time stamp \"" + *options.timestamp + "\" is not JSON, " +
                    describeFault(*fault, text) + " (a wrong time stamp, or a plain text: try --text)");
    }
    std::cout << std::get<std::string>(pretty) << '\n';
    return exitSuccess;
}

}  // namespace

int runDecode(std::span<const std::string> arguments) {
    DecodeOptions options;
    OptionParser parser("decode", "[FILE|-]",
                        "Unscrambles a captured request body, {\"payload\": …} or the bare base64 text, and prints its "
                        "JSON.\nThe time stamp is the text of the request's ts header.");
    parser.addText("ts", "TEXT", "the ts header that came with the body", options.timestamp);
    parser.addFlag("encode", "do the reverse: make an envelope of JSON", options.encode);
    parser.addFlag("text", "print what comes out as it stands, JSON or not", options.text);
    const auto files = parser.parse(arguments);
    if (!files) return parser.exitStatus();
    if (!options.timestamp) return parser.misuse("--ts is missing");
    if (files->size() > 1) return parser.misuse("one file at a time");
    if (!files->empty()) options.file = files->front();

    const auto input = readAll(options.file);
    if (const auto* failure = std::get_if<Failure>(&input)) return fail(failure->clause);
    const auto text = trimmed(std::get<std::string>(input));
    return options.encode ? encode(text, *options.timestamp) : decode(text, options);
}

}  // namespace orbinel::tool
