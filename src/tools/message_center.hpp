#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "session/endpoints.hpp"
#include "session/helper.hpp"
#include "session/request_sender.hpp"
#include "session/session.hpp"
#include "user/identity.hpp"

namespace orbinel {

/// Asks the vendor's service for the pushes that were sent to this device. The records are passed on as they come.
///
/// Threads: any.
class MessageCenter {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        OrbinelIdentity& identity;
        const OrbinelEndpoints& endpoints;
        OrbinelRequest& sender;
        const Lifetime& lifetime;
        platform::Scheduler& scheduler;
    };

    using Callback = std::function<void(const Array& messages)>;

    explicit MessageCenter(const Needs& needs);

    /// The messages of a period, both ends in whole seconds; the limit is the service's to apply. The callback gets an
    /// empty array inside the call where nothing can be asked (a date is missing, the period is empty or turned round,
    /// the partner or the device is unknown). Otherwise it is called on the main queue with the answer, empty where
    /// that is no array, and never where the request fails.
    void getMessageCenterData(std::int32_t limit, std::optional<Date> startDate, std::optional<Date> endDate,
                              Callback success) noexcept;

private:
    struct Period {
        Date start;
        Date end;
    };

    /// Nothing where the partner or the device is unknown.
    [[nodiscard]] std::optional<Dictionary> makePayload(std::int32_t limit, const Period& period);
    void handOver(Value answer, const Callback& success);
    void call(const Callback& success, const Array& messages) noexcept;

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    OrbinelIdentity& identity_;
    const OrbinelEndpoints& endpoints_;
    OrbinelRequest& sender_;
    const Lifetime& lifetime_;
    platform::Scheduler& scheduler_;
};

}  // namespace orbinel
