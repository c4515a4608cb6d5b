#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "orbinel/export.hpp"
#include "orbinel/platform/http.hpp"
#include "orbinel/platform/scheduler.hpp"

namespace orbinel::headless {

/// A network that a test scripts: a handler stands for everything on the other side.
///
/// As a real network does, it follows redirects where the request asks for it, refuses URLs that are not absolute http
/// or https, and fails bodies above 16 MiB.
///
/// Threads: one background thread of its own runs the handler and the completions, in the order of the requests.
class ORBINEL_API HeadlessHttp final : public platform::Http {
public:
    /// What the other side does with one request; nothing: it never answers.
    using Handler = std::function<std::optional<platform::HttpOutcome>(const platform::HttpRequest&)>;

    /// Time-outs count on the clock's time; without a clock nothing times out.
    explicit HeadlessHttp(std::shared_ptr<platform::Scheduler> clock = nullptr);
    ~HeadlessHttp() override;

    /// Replaces the handler. Until there is one, every request fails.
    void setHandler(Handler handler);

    /// Every request that has reached the other side, redirected ones included, in their order.
    [[nodiscard]] std::vector<platform::HttpRequest> sent() const;
    void clearSent();

    /// Waits until every request has been answered or is one that is never answered, and every completion so far has
    /// returned; false where that takes longer than the limit (real time). Not to be called by a completion.
    bool waitUntilIdle(std::chrono::milliseconds limit = std::chrono::seconds{5});

    /// How many requests have not been completed, those that are never answered included.
    [[nodiscard]] std::size_t inFlight() const;

    [[nodiscard]] platform::Ticket send(platform::HttpRequest request,
                                        platform::HttpCompletion completion) noexcept override;

private:
    struct Network;

    const std::shared_ptr<Network> network_;  // its thread and the tickets may outlive this
};

}  // namespace orbinel::headless
