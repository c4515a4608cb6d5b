#include "base/reports.hpp"

#include <array>

#include "base/redaction.hpp"
#include "base/value_text.hpp"

namespace orbinel {

namespace {

/// What the thread is in the middle of. Making a crash report is kept apart from making a record or a feed, because
/// a crash report is itself handed over as a feed.
thread_local bool makingReport = false;
thread_local bool makingCrashReport = false;

/// Raises a flag for the length of a scope, unless it is raised already.
class Raised {
public:
    explicit Raised(bool& flag) noexcept : flag_(flag), first_(!std::exchange(flag, true)) {}
    ~Raised() {
        if (first_) flag_ = false;
    }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;
    [[nodiscard]] bool first() const noexcept { return first_; }

private:
    bool& flag_;
    bool first_;
};

}  // namespace

std::string_view textOf(LogType type) noexcept {
    constexpr std::array<std::string_view, 14> texts{
        "lifecycle",         "common",        "inapp", "push",          "smart_recommender", "message_center",
        "content_optimizer", "wizard",        "event", "cart_reminder", "geofence",          "",
        "attributes",        "shake_detector"};
    const auto index = static_cast<std::size_t>(type);
    return index < texts.size() ? texts[index] : std::string_view{};
}

std::string_view textOf(LogLevel level) noexcept {
    switch (level) {
        case LogLevel::info:
            return "info";
        case LogLevel::error:
            return "error";
    }
    return {};
}

void Reports::take(DiagnosticRecord record) {
    const Raised report(makingReport);
    note([&] {
        std::string line(textOf(record.type));
        line.append(record.level == LogLevel::error ? " error: " : ": ").append(record.message);
        if (record.customAttributes) {
            line.append(" ").append(textOf(redacted(*record.customAttributes, textOf(record.type))));
        }
        return line;
    });
    auto* sink = diagnosticLog.get();
    if (report.first() && sink != nullptr && sink->takesRecords()) sink->log(std::move(record));
}

void Reports::take(Dictionary data, std::string_view methodType, bool isError, bool shouldFeed) {
    const Raised report(makingReport);
    note([&] {
        return "feed " + std::string(methodType) + (isError ? " error: " : ": ") + textOf(redacted(data, methodType));
    });
    auto* sink = wizardFeed.get();
    if (report.first() && sink != nullptr && sink->takesFeeds(shouldFeed)) {
        sink->feedData(std::move(data), methodType, isError, shouldFeed);
    }
}

void Reports::sendError(std::string_view error, std::string_view description) noexcept {
    try {
        const Raised crash(makingCrashReport);
        note([&] { return "crash report: " + std::string(error) + " -- " + std::string(description); });
        auto* sink = crashReports.get();
        if (crash.first() && !makingReport && sink != nullptr) sink->sendError(error, description);
    } catch (...) {
        note("A crash report could not be made.");
    }
}

void Reports::writeDevelopmentLine(std::string_view line) noexcept {
    try {
        console_.writeLine("[ORBINEL][DEVELOPMENT] " + textOf(Value(redacted(line))));
    } catch (...) {  // out of memory: the line is lost
    }
}

}  // namespace orbinel
