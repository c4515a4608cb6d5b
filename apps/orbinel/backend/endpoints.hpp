#pragma once

#include <rapidjson/document.h>

#include <span>
#include <string>
#include <string_view>

namespace orbinel::tool {

class PayloadReader;

/// How a request's body travels.
enum class BodyForm {
    plain,            // JSON
    envelope,         // {"payload": scrambled JSON}
    envelopeOrPlain,  // an envelope, but JSON as it stands is understood too
};

struct Endpoint {
    std::string_view path;
    std::string_view answerFile;     // name in the directory of answers
    std::string_view neutralAnswer;  // JSON, where the file is missing or broken
    BodyForm form;
    std::string_view requiredHeader;  // beside those that every request has
    std::string (*summarise)(PayloadReader& payload);
};

/// Every path that the backend serves, all by POST.
[[nodiscard]] std::span<const Endpoint> endpoints();

[[nodiscard]] const Endpoint* findEndpoint(std::string_view path);

inline constexpr std::string_view identityPath = "/api/identity/v3/get";

}  // namespace orbinel::tool
