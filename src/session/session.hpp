#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "orbinel/platform/json.hpp"
#include "session/collaborators.hpp"
#include "session/helper.hpp"
#include "session/session_record.hpp"

namespace orbinel {

/// Which session something began in, and under which partner. What comes back when another one is current is too late.
struct SessionMark {
    std::uint64_t record = 0;
    std::string partnerName;
    bool operator==(const SessionMark&) const = default;
};

/// The one record in which everything of a foreground period gathers, from its start to its stop.
///
/// Threads: any. The record has one mutex; `update` and `read` hold it for the length of the function given.
class OrbinelSession {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        const platform::Json& json;
        SessionCollaborators& collaborators;
    };

    explicit OrbinelSession(const Needs& needs);

    /// Changes the record. The function must only touch the record: it runs under the mutex.
    template <typename Change>
    auto update(Change&& change) {
        const MutexLock lock(mutex_);
        return std::forward<Change>(change)(record_);
    }
    template <typename Look>
    [[nodiscard]] auto read(Look&& look) const {
        const MutexLock lock(mutex_);
        return std::forward<Look>(look)(static_cast<const SessionRecord&>(record_));
    }

    /// Tells the records of successive sessions apart, counted from 1. Cheaper than a look into the record.
    [[nodiscard]] std::uint64_t recordNumber() const noexcept { return recordNumber_.load(std::memory_order_acquire); }

    [[nodiscard]] SessionMark mark() const;

    [[nodiscard]] std::string partnerName() const;
    /// Event names that wait for another partner's campaigns are dropped.
    void setPartnerName(std::string name);

    /// Stores the start time, so that it survives the process being killed in the background.
    void startTimer() noexcept;

    /// Seconds since the stored start. Anything implausible (below zero or above one day) counts as 10 seconds.
    [[nodiscard]] std::int32_t calculateSessionDuration() const noexcept;

    void emptyReceivedInappData();

    /// What the platform says of the permission for notifications, read at the start.
    void setPushPermissions(bool granted) noexcept;

    /// Completes the record for its stop, hands it out and leaves an empty one, so that what is recorded from here on
    /// belongs to the next session. Who and where stays in it: partner, identity, device, attributes, session ID.
    [[nodiscard]] SessionRecord takeForStop();

    /// The record as it would be sent, were the session to stop now. Nothing is taken out.
    [[nodiscard]] Dictionary describeNow();

    /// Removes empty containers, an absent "universal_link", and "session_content_variables" in any case.
    void filterPayload(Dictionary& payload) const noexcept;

    /// Pretty JSON text, for logs; "{}" where there is none.
    [[nodiscard]] std::string dictToJson(const Dictionary& dictionary) const noexcept;

    /// Whether the text is JSON of a dictionary or an array.
    [[nodiscard]] bool isValidJSONString(std::string_view text) const noexcept;

private:
    void fillSession(SessionRecord& record, TakenAttributes attributes);
    [[nodiscard]] SessionRecord takeRecord(const SessionRecord& filled);
    void resetCollaborators();

    Reports& reports_;
    OrbinelHelper& helper_;
    const platform::Json& json_;
    SessionCollaborators& collaborators_;

    mutable Mutex mutex_;
    SessionRecord record_ ORBINEL_GUARDED_BY(mutex_);
    std::atomic<std::uint64_t> recordNumber_{1};  // changed under the mutex only
};

}  // namespace orbinel
