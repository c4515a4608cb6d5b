#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "orbinel/platform/ticket.hpp"

namespace orbinel::platform {

using HttpHeaders = std::vector<std::pair<std::string, std::string>>;

struct HttpRequest {
    std::string method = "POST";
    std::string url;                            // absolute, http or https (RFC 3986)
    HttpHeaders headers;                        // sent in this order; nothing is added that names the client
    std::string body;                           // sent as it stands; not sent with GET
    std::chrono::milliseconds timeout{60'000};  // for the whole transfer, from its start
    // With method and body kept, whatever the status. More than 20 are a failure, and so is one from https to http
    // unless the method is GET.
    bool followRedirects = true;
};

struct HttpResponse {
    int status = 0;
    HttpHeaders headers;              // of the last response, names as received
    std::optional<std::string> body;  // absent where the status has none (204, 304); otherwise at least empty
    std::string finalUrl;             // after redirects

    /// The value of the first header of that name, in any letter case.
    [[nodiscard]] std::optional<std::string> header(std::string_view name) const {
        const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
        for (const auto& [candidate, value] : headers) {
            bool same = candidate.size() == name.size();
            for (std::size_t i = 0; same && i < name.size(); ++i) same = lower(candidate[i]) == lower(name[i]);
            if (same) return value;
        }
        return std::nullopt;
    }
};

struct HttpFailure {
    std::string reason;      // one sentence for a log, without secrets
    bool cancelled = false;  // the ticket or the service went away
};

using HttpOutcome = std::variant<HttpResponse, HttpFailure>;
using HttpCompletion = std::function<void(HttpOutcome)>;

/// Sends HTTP requests.
///
/// Threads: callable from any thread. Completions run on one background thread of the service, one at a time; a
/// completion may call `send`.
/// Order: requests may overtake each other. A completion runs exactly once and never inside `send`; it may be empty.
/// Bounds: more requests than the service transfers at once wait their turn, their time-out not yet running. A
/// response body above 16 MiB ends its request with a failure.
/// Ending: destroying the service completes what is in flight with a cancelled failure and waits for its thread,
/// unless it is destroyed on that thread.
class Http {
public:
    virtual ~Http() = default;

    /// Starts a request. Dropping the ticket cancels it; its completion then still runs, with a cancelled failure.
    /// A URL that cannot be used, a time-out, a broken connection: each completes with a failure; nothing is thrown.
    [[nodiscard]] virtual Ticket send(HttpRequest request, HttpCompletion completion) noexcept = 0;
};

}  // namespace orbinel::platform
