#pragma once

#include <atomic>
#include <concepts>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/late.hpp"
#include "orbinel/platform/console.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// What a diagnostic record is about. The numbers are part of the format.
enum class LogType {
    lifecycle = 0,
    common = 1,
    inapp = 2,
    push = 3,
    smartRecommender = 4,
    messageCenter = 5,
    contentOptimizer = 6,
    wizard = 7,
    event = 8,
    cartReminder = 9,
    geofence = 10,
    reinit = 11,  // travels under the empty text: the number is reserved
    attributes = 12,
    shakeDetector = 13,
    wishlist = 14,  // travels under the empty text too
};

enum class LogLevel {
    info = 0,
    error = 2,  // 1 is reserved
};

/// The text under which a type travels.
[[nodiscard]] std::string_view textOf(LogType type) noexcept;
[[nodiscard]] std::string_view textOf(LogLevel level) noexcept;

struct DiagnosticRecord {
    LogType type = LogType::common;
    LogLevel level = LogLevel::info;
    std::string message;
    std::optional<Dictionary> customAttributes;
};

/// Takes diagnostic records. Called on any thread; must not block, and must not report a failure of its own through
/// the reports that it serves (such a report is dropped).
class DiagnosticLog {
public:
    virtual ~DiagnosticLog() = default;
    [[nodiscard]] virtual bool takesRecords() const noexcept = 0;
    virtual void log(DiagnosticRecord record) = 0;
};

/// Takes what operations were called with, for the integration wizard. The same rules as for records.
class WizardFeed {
public:
    virtual ~WizardFeed() = default;
    [[nodiscard]] virtual bool takesFeeds(bool shouldFeed) const noexcept = 0;
    virtual void feedData(Dictionary data, std::string_view methodType, bool isError, bool shouldFeed) = 0;
};

/// Takes caught exceptions. The same rules as for records.
class CrashReports {
public:
    virtual ~CrashReports() = default;
    virtual void sendError(std::string_view error, std::string_view description) = 0;
};

/// Where every folder reports to: diagnostic records, wizard feeds and crash reports go to the sinks that core binds,
/// and all of it, with what is dropped and why, to the development log on the console while that is on.
///
/// A report that nobody takes costs two atomic reads: attributes and data are given as functions and only built for
/// a taker. A report made while the same thread is making one reaches the development log only, so that no report can
/// call itself.
///
/// Threads: any. Nothing is thrown. Sinks are bound before and unbound after everything that reports.
class Reports {
public:
    explicit Reports(platform::Console& console) : console_(console) {}

    Late<DiagnosticLog> diagnosticLog;
    Late<WizardFeed> wizardFeed;
    Late<CrashReports> crashReports;

    void setDevelopmentLog(bool on) noexcept { developmentLog_.store(on, std::memory_order_relaxed); }
    [[nodiscard]] bool developmentLog() const noexcept { return developmentLog_.load(std::memory_order_relaxed); }

    void log(LogType type, LogLevel level, std::string_view message) noexcept {
        if (recordsAreTaken()) deliver(type, level, message, [](DiagnosticRecord&) {});
    }

    /// `attributes` is called at most once, and only when somebody takes the record.
    template <std::invocable Attributes>
    void log(LogType type, LogLevel level, std::string_view message, Attributes&& attributes) noexcept {
        if (!recordsAreTaken()) return;
        deliver(type, level, message, [&](DiagnosticRecord& record) { record.customAttributes = attributes(); });
    }

    /// `data` is called at most once, and only when somebody takes the feed.
    template <std::invocable Data>
    void feed(std::string_view methodType, Data&& data, bool isError = false, bool shouldFeed = false) noexcept {
        if (!feedsAreTaken(shouldFeed)) return;
        deliverFeed(methodType, isError, shouldFeed, [&](Dictionary& target) { target = data(); });
    }

    /// The same for what a person at the vendor's panel is to see: it is sent there while the wizard is connected.
    template <std::invocable Data>
    void feedToPanel(std::string_view methodType, Data&& data) noexcept {
        constexpr bool isError = false;
        constexpr bool shouldFeed = true;
        feed(methodType, std::forward<Data>(data), isError, shouldFeed);
    }

    /// Whether a feed made now would be taken; for data that costs something even before it is asked for.
    [[nodiscard]] bool feedsAreTaken(bool shouldFeed) const noexcept {
        const auto* sink = wizardFeed.get();
        return (sink != nullptr && sink->takesFeeds(shouldFeed)) || developmentLog();
    }

    void sendError(std::string_view error, std::string_view description) noexcept;

    /// For the development log only: what was dropped, and why. `sentence` is called only while that is on.
    template <std::invocable Sentence>
    void note(Sentence&& sentence) noexcept {
        if (!developmentLog()) return;
        try {
            writeDevelopmentLine(sentence());
        } catch (...) {  // a note is not worth more than a note
        }
    }
    void note(std::string_view sentence) noexcept {
        if (developmentLog()) writeDevelopmentLine(sentence);
    }

private:
    [[nodiscard]] bool recordsAreTaken() const noexcept {
        const auto* sink = diagnosticLog.get();
        return (sink != nullptr && sink->takesRecords()) || developmentLog();
    }

    template <typename Fill>
    void deliver(LogType type, LogLevel level, std::string_view message, Fill&& fill) noexcept {
        try {
            DiagnosticRecord record{type, level, std::string(message), std::nullopt};
            fill(record);
            take(std::move(record));
        } catch (...) {
            note("A diagnostic record could not be made.");
        }
    }

    template <typename Fill>
    void deliverFeed(std::string_view methodType, bool isError, bool shouldFeed, Fill&& fill) noexcept {
        try {
            Dictionary data;
            fill(data);
            take(std::move(data), methodType, isError, shouldFeed);
        } catch (...) {
            note("A wizard feed could not be made.");
        }
    }

    void take(DiagnosticRecord record);
    void take(Dictionary data, std::string_view methodType, bool isError, bool shouldFeed);
    void writeDevelopmentLine(std::string_view line) noexcept;

    platform::Console& console_;
    std::atomic<bool> developmentLog_{false};
};

}  // namespace orbinel
