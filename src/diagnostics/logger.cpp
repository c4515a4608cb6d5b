#include "diagnostics/logger.hpp"

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

#include "base/guard.hpp"
#include "base/utf8.hpp"
#include "base/value_text.hpp"
#include "base/value_weight.hpp"
#include "tools/console_line.hpp"

namespace orbinel {

namespace {

using std::chrono::milliseconds;

constexpr double shortestInterval = 1;                   // seconds: a slip of the backend must not drain a battery
constexpr double longestInterval = 10 * 365 * 86'400.0;  // seconds: as good as never, and within every clock's range

milliseconds intervalOf(double seconds) noexcept {
    return milliseconds(static_cast<milliseconds::rep>(std::clamp(seconds, shortestInterval, longestInterval) * 1000));
}

/// In bytes, about: what differs between records counts, and a little for the rest.
std::size_t weightOf(const OrbinelLog& record) noexcept {
    constexpr std::size_t ofTheRest = 256;
    const auto ofAttributes = record.customAttributes ? orbinel::weightOf(*record.customAttributes) : 0;
    return ofTheRest + record.message.size() + ofAttributes;
}

}  // namespace

OrbinelLogger::OrbinelLogger(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      session_(needs.session),
      sources_{needs.helper, needs.session, needs.identity, needs.device},
      testDevices_(needs.testDevices),
      endpoints_(needs.endpoints),
      encryptor_(needs.encryptor),
      lifetime_(needs.lifetime),
      scheduler_(needs.scheduler),
      http_(needs.http),
      json_(needs.json),
      console_(needs.console) {}

// --- What the backend asks for ---

void OrbinelLogger::setSessionId(const std::string& sessionId) noexcept {
    guarded(reports_, "+[OrbinelLogger setSessionId:]", [&] {
        auto kept = sessionId;
        const MutexLock lock(mutex_);
        sessionId_.swap(kept);
    });
}

void OrbinelLogger::startSendingLogsIfAppropriate() noexcept {
    guarded(reports_, "+[OrbinelLogger startSendingLogsIfAppropriate]", [&] {
        if (!isLoggingAppropriate() || timerMade_.exchange(true)) return;
        underWay_.keep(underWay_.open(),
                       scheduler_.repeatOnMain(intervalOf(flushInterval_),
                                               lifetime_.whileAlive([this] { prepareAndSendLogs(); })));
    });
}

// --- Gathering ---

bool OrbinelLogger::takesRecords() const noexcept { return isLoggingAppropriate() || testDevices_.isTestDevice(); }

void OrbinelLogger::log(DiagnosticRecord given) noexcept {
    guarded(reports_, "+[OrbinelLogger log:]", [&] {
        OrbinelLog record(std::move(given));
        const bool filled = guarded(reports_, "-[OrbinelLog initWithLogType:message:customAttributes:logLevel:]",
                                    [&] { record.fill(sources_); });
        if (!filled && testDevices_.isTestDevice()) {
            console_.writeLine("[ORBINEL][V2LOGS] failed log creation with given data.");
        }
        log(std::move(record));
    });
}

void OrbinelLogger::log(OrbinelLog record) noexcept {
    guarded(reports_, "+[OrbinelLogger log:]", [&] {
        if (!takesRecords()) return;
        const bool printed = testDevices_.isTestDevice();
        const auto line = printed ? lineOf(record) : std::string();
        append(std::move(record));
        if (printed) console_.writeLine(line);
    });
}

/// What is beyond the bounds is dropped: only a loop writes so much between two batches.
void OrbinelLogger::append(OrbinelLog record) {
    constexpr std::size_t mostRecords = 20'000;
    constexpr std::size_t mostBytes = std::size_t{8} << 20U;
    const auto bytes = weightOf(record);
    {
        const MutexLock lock(mutex_);
        if (logs_.size() < mostRecords && bytes <= mostBytes - weight_) {
            weight_ += bytes;
            return logs_.push_back(std::move(record));
        }
        if (std::exchange(dropsRecords_, true)) return;
    }
    reports_.note("Dropping diagnostic records until the next batch is sent: too much waits.");
}

std::string OrbinelLogger::lineOf(const OrbinelLog& record) const {
    std::string line("[ORBINEL][V2LOGS][");
    line.append(record.getLogType()).append("] ").append(textOf(Value(record.message)));
    if (record.customAttributes) line.append(" ").append(jsonOnOneLine(json_, *record.customAttributes));
    return line;
}

std::vector<OrbinelLog> OrbinelLogger::getLogs() const noexcept {
    return guarded(reports_, "+[OrbinelLogger getLogs]", std::vector<OrbinelLog>(), [&] {
        const MutexLock lock(mutex_);
        return logs_;
    });
}

std::vector<OrbinelLog> OrbinelLogger::flushLogs() noexcept {
    return guarded(reports_, "+[OrbinelLogger flushLogs]", std::vector<OrbinelLog>(), [&] { return takeBatch().logs; });
}

OrbinelLogger::Batch OrbinelLogger::takeBatch() {
    Batch batch;
    const MutexLock lock(mutex_);
    batch.sessionId = sessionId_;
    batch.logs.swap(logs_);
    weight_ = 0;
    dropsRecords_ = false;
    return batch;
}

// --- Sending ---

void OrbinelLogger::prepareAndSendLogs() noexcept {
    guarded(reports_, "+[OrbinelLogger prepareAndSendLogs]", [&] {
        if (!maySend()) return;
        const auto batch = std::make_shared<Batch>(takeBatch());
        if (batch->logs.empty()) return;
        scheduler_.postGlobal(lifetime_.whileAlive([this, batch] {
            guarded(reports_, "+[OrbinelLogger prepareAndSendLogs]", [&] { send(std::move(*batch)); });
        }));
    });
}

void OrbinelLogger::send(Batch batch) {
    Array records;
    records.reserve(batch.logs.size());
    for (auto& log : batch.logs) {
        log.sessionId = batch.sessionId;
        records.emplace_back(toDictionary(std::move(log)));
    }
    Dictionary payload;
    payload.set("partner_name", session_.partnerName());
    payload.set("logs", std::move(records));
    const auto json = json_.serialise(payload, platform::JsonStyle::pretty);
    if (json) sendLogPayloadData(*json);
}

void OrbinelLogger::sendLogPayloadData(const std::string& data) noexcept {
    guarded(reports_, "+[OrbinelLogger sendLogPayloadData:]", [&] {
        if (!maySend()) return;
        auto timestamp = helper_.getTimestampAsString();
        const auto envelope = encryptor_.getEncryptedPayloadForData(data, timestamp);
        auto body = json_.serialise(envelope, platform::JsonStyle::compact);
        if (body) post(std::move(*body), std::move(timestamp));
        if (testDevices_.isTestDevice()) printSent(data);
    });
}

void OrbinelLogger::post(std::string body, std::string timestamp) {
    platform::HttpRequest request;
    request.url = endpoints_.logAPIv2();
    request.headers = {{"Content-Type", "application/json"},
                       {"Content-Length", std::to_string(body.size())},
                       {"ts", std::move(timestamp)},
                       {"X-Requested-With", session_.partnerName()}};
    request.body = std::move(body);
    request.timeout = std::chrono::seconds(60);
    const auto place = underWay_.open();
    underWay_.keep(place,
                   http_.send(std::move(request), lifetime_.whileAlive([this, place](const platform::HttpOutcome&) {
                       underWay_.close(place);
                   })));
}

void OrbinelLogger::printSent(const std::string& data) {
    console_.writeLine("[ORBINEL][V2LOGS][sentLogs]: " +
                       (isValidUtf8(data) ? onOneLine(data) : "Failed to convert NSData to NSString"));
}

}  // namespace orbinel
