#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

#include "base/lifetime.hpp"
#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "base/ticket_box.hpp"
#include "diagnostics/log_record.hpp"
#include "orbinel/platform/console.hpp"
#include "orbinel/platform/http.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "session/collaborators.hpp"
#include "session/encryptor.hpp"
#include "session/endpoints.hpp"
#include "session/helper.hpp"
#include "session/session.hpp"
#include "tools/test_devices.hpp"
#include "user/device_attributes.hpp"
#include "user/identity.hpp"

namespace orbinel {

/// Gathers the diagnostic records and sends them to the vendor in batches, as far and as often as the backend asks for
/// that. On a test device every record is gathered and printed at once, whatever the backend asks for.
///
/// Records live in memory only: each tick of the timer takes them out and sends them once, delivered or not. While
/// nothing is sent they stay, up to 20,000 records and 8 MiB; what comes beyond that is dropped, which the development
/// log says once.
///
/// On the console, each line a record or a batch (attributes and batches are JSON):
///
///     [ORBINEL][V2LOGS][lifecycle] resumeSession
///     [ORBINEL][V2LOGS][common] Request is added to Queue. {"request_type":"STOP"}
///     [ORBINEL][V2LOGS][sentLogs]: { "partner_name": "acme", "logs": [ … ] }
///
/// Threads: any. `log` neither blocks nor waits: see `OrbinelLog::fill` for the locks; its own is held for an append.
/// Batches are built and sent on a background thread.
class OrbinelLogger final : public DiagnosticLog, public SessionLogSwitches {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        OrbinelIdentity& identity;
        OrbinelDeviceAttributes& device;
        const TestDevices& testDevices;
        const OrbinelEndpoints& endpoints;
        const OrbinelEncryptor& encryptor;
        const Lifetime& lifetime;
        platform::Scheduler& scheduler;
        platform::Http& http;
        const platform::Json& json;
        platform::Console& console;
    };

    explicit OrbinelLogger(const Needs& needs);

    // --- What the backend asks for. ---

    void setLogFlushTimeInterval(double seconds) noexcept override { flushInterval_ = seconds; }
    void setIsLoggingEnabled(bool enabled) noexcept override { isLoggingEnabled_ = enabled; }
    void setSessionId(const std::string& sessionId) noexcept override;

    /// Whether records are to be sent: switched on, and with an interval.
    [[nodiscard]] bool isLoggingAppropriate() const noexcept { return isLoggingEnabled_ && flushInterval_ > 0; }

    /// Starts the timer, once in the life of the world: it keeps the interval that it was started with, and goes on,
    /// to no effect, while records are not to be sent.
    void startSendingLogsIfAppropriate() noexcept override;

    // --- Gathering. ---

    [[nodiscard]] bool takesRecords() const noexcept override;
    void log(DiagnosticRecord record) noexcept override;
    void log(OrbinelLog record) noexcept;

    /// What waits to be sent.
    [[nodiscard]] std::vector<OrbinelLog> getLogs() const noexcept;

    /// Empties the buffer and hands out what was in it, so that no record is lost between the two.
    std::vector<OrbinelLog> flushLogs() noexcept;

    // --- Sending. ---

    /// Takes what waits and has it sent: the timer's work.
    void prepareAndSendLogs() noexcept;

    /// Sends a payload of JSON, scrambled. Nobody waits for the answer, and nothing is sent again.
    void sendLogPayloadData(const std::string& data) noexcept;

    /// Stops the timer and cancels what is under way.
    void cancelAll() { underWay_.cancelAll(); }

private:
    struct Batch {
        std::string sessionId;
        std::vector<OrbinelLog> logs;
    };

    [[nodiscard]] bool maySend() const noexcept { return isLoggingAppropriate() && !helper_.sdkDisabled(); }
    void append(OrbinelLog record);
    [[nodiscard]] Batch takeBatch();
    void send(Batch batch);
    void post(std::string body, std::string timestamp);
    [[nodiscard]] std::string lineOf(const OrbinelLog& record) const;
    void printSent(const std::string& data);

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    const OrbinelLog::Sources sources_;
    const TestDevices& testDevices_;
    const OrbinelEndpoints& endpoints_;
    const OrbinelEncryptor& encryptor_;
    const Lifetime& lifetime_;
    platform::Scheduler& scheduler_;
    platform::Http& http_;
    const platform::Json& json_;
    platform::Console& console_;
    TicketBox underWay_;  // the timer, and what is on its way

    std::atomic<bool> isLoggingEnabled_{false};
    std::atomic<double> flushInterval_{0};  // seconds
    std::atomic<bool> timerMade_{false};

    mutable Mutex mutex_;
    std::string sessionId_ ORBINEL_GUARDED_BY(mutex_);
    std::vector<OrbinelLog> logs_ ORBINEL_GUARDED_BY(mutex_);
    std::size_t weight_ ORBINEL_GUARDED_BY(mutex_) = 0;     // of the records, in bytes, about
    bool dropsRecords_ ORBINEL_GUARDED_BY(mutex_) = false;  // since the last batch
};

}  // namespace orbinel
