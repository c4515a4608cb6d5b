#pragma once

#include <memory>
#include <string>
#include <vector>

#include "orbinel/platform/http.hpp"

namespace orbinel::hosts {

/// An HTTP server on the loopback interface that behaves as the path asks for.
///
/// Threads: callable from any thread. Ending: lets go of the requests that hang, then waits for its threads.
class LoopbackServer {
public:
    struct Received {
        std::string method;
        std::string path;
        platform::HttpHeaders headers;
        std::string body;
        int clientPort = 0;  // tells connections apart
    };

    LoopbackServer();
    ~LoopbackServer();

    /// Paths: /answer ("hello"), /no-content (204), /broken (500), /redirect (302 to /answer), /see-other (303 to
    /// /answer), /circle (302 to itself), /hang, /huge (16 MiB and a byte), /announced-huge
    /// (the same, its length not hidden), /trickle (a byte now and then, without an end), /endless-headers.
    [[nodiscard]] std::string url(const std::string& path) const;

    /// Of a port where every connection is closed without an answer.
    [[nodiscard]] std::string closingUrl() const;

    /// In order of arrival.
    [[nodiscard]] std::vector<Received> received() const;

private:
    struct Machinery;

    const std::unique_ptr<Machinery> machinery_;
};

}  // namespace orbinel::hosts
