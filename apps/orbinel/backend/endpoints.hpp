#pragma once

#include <span>
#include <string>
#include <string_view>

namespace orbinel::tool {

class PayloadReader;
class Service;
struct Reply;
struct ServiceCall;

/// How a request's body travels.
enum class BodyForm {
    none,             // reached by GET; everything else by POST
    plain,            // JSON
    envelope,         // {"payload": scrambled JSON}
    envelopeOrPlain,  // an envelope, but JSON as it stands is understood too
};

struct Endpoint {
    std::string_view path;
    std::string_view answerFile;     // name in the directory of answers
    std::string_view neutralAnswer;  // JSON, where the file is missing or broken
    BodyForm form;
    std::string_view requiredHeader;  // beside those that every request has; may be empty
    std::string (*summarise)(PayloadReader& payload);
    Reply (Service::*reply)(const ServiceCall& call);

    [[nodiscard]] std::string_view method() const { return form == BodyForm::none ? "GET" : "POST"; }
};

/// Every path that the backend serves.
[[nodiscard]] std::span<const Endpoint> endpoints();

[[nodiscard]] const Endpoint* findEndpoint(std::string_view path);

}  // namespace orbinel::tool
