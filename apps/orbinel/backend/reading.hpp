#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orbinel::tool {

/// One request as it came in.
struct Incoming {
    std::string method;
    std::string path;   // unescaped
    std::string query;  // as it stands, without the question mark
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;

    /// The first header of that name, whatever its case; nullptr when there is none.
    [[nodiscard]] const std::string* header(std::string_view name) const;
};

/// What was found in it.
struct Reading {
    bool served = false;              // the path and method are the API's
    bool unreadableEnvelope = false;  // an envelope was due and its inside could not be reached
    std::string payload;              // valid JSON text; empty when the body is none
    std::string partner;              // may be empty
    std::string summary;              // may be empty
    std::string problem;              // one clause about the first thing that is wrong; empty when all is well
};

/// Never fails: whatever is wrong with the request becomes `problem`.
[[nodiscard]] Reading readRequest(const Incoming& request);

}  // namespace orbinel::tool
