#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "apps/orbinel/play/trace.hpp"
#include "orbinel/platform/base64.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "platform/forwarding_http.hpp"

namespace orbinel::tool {

/// Writes every request and its outcome into the trace, and knows what is in flight.
///
/// Threads: as every HTTP service. Order: a response is in the trace before its completion runs. A request counts as
/// in flight until its completion has returned.
class TracedHttp final : public platform::ForwardingHttp {
public:
    /// With `timeouts`, time-outs count on that scheduler's clock instead of the target's. The trace must outlive the
    /// target's last completion.
    TracedHttp(std::shared_ptr<platform::Http> target, std::shared_ptr<const platform::Base64> base64, Trace& trace,
               std::shared_ptr<platform::Scheduler> timeouts);

    [[nodiscard]] platform::Ticket send(platform::HttpRequest request,
                                        platform::HttpCompletion completion) noexcept override;

    /// How many requests are in flight, without those whose URL contains one of the parts.
    [[nodiscard]] std::size_t inFlight(const std::vector<std::string>& ignoredParts) const;

    /// Whether requests have failed, not by being cancelled, and none has been answered.
    [[nodiscard]] bool isUnanswered() const;

    /// A number that grows whenever a request begins or its completion has returned.
    [[nodiscard]] std::uint64_t changes() const;

    /// Waits until that number is another one, or the time is over.
    void waitForChange(std::uint64_t known, std::chrono::steady_clock::time_point until) const;

private:
    struct Log;
    struct Transfer;

    const std::shared_ptr<Log> log_;  // completions share it
    const std::shared_ptr<platform::Scheduler> timeouts_;
};

}  // namespace orbinel::tool
