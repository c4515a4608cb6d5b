#pragma once

#include <string>
#include <utility>
#include <vector>

namespace orbinel::tool {

struct Reply {
    int status = 200;
    std::string body;  // JSON, unless a header says otherwise
    std::vector<std::pair<std::string, std::string>> headers;
    std::string note;     // a few words for the line about the request; may be empty
    std::string problem;  // why it was refused, a clause without capital letter and end mark; else empty
};

/// With a sentence made of the clause for a body.
[[nodiscard]] Reply refusal(int status, std::string clause);

}  // namespace orbinel::tool
