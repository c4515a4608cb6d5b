#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "base/mutex.hpp"
#include "base/reports.hpp"

namespace orbinel::testing {

/// Takes every record and feed, and keeps them in order.
class RecordingSinks final : public DiagnosticLog, public WizardFeed {
public:
    struct Feed {
        std::string method;
        Dictionary data;
        bool isError = false;
        bool shouldFeed = false;
    };

    bool takesRecords() const noexcept override { return true; }
    void log(DiagnosticRecord record) override {
        const MutexLock lock(mutex_);
        records_.push_back(std::move(record));
    }
    bool takesFeeds(bool) const noexcept override { return true; }
    void feedData(Dictionary data, std::string_view methodType, bool isError, bool shouldFeed) override {
        const MutexLock lock(mutex_);
        feeds_.push_back({std::string(methodType), std::move(data), isError, shouldFeed});
    }

    std::vector<DiagnosticRecord> records() const {
        const MutexLock lock(mutex_);
        return records_;
    }
    std::vector<Feed> feeds(std::string_view method) const {
        const MutexLock lock(mutex_);
        std::vector<Feed> found;
        std::copy_if(feeds_.begin(), feeds_.end(), std::back_inserter(found),
                     [&](const Feed& feed) { return feed.method == method; });
        return found;
    }
    /// The messages that begin with one of these texts, in order.
    std::vector<std::string> messages(const std::vector<std::string>& beginnings) const {
        std::vector<std::string> found;
        for (const auto& record : records()) {
            const bool wanted = std::any_of(beginnings.begin(), beginnings.end(),
                                            [&](const auto& text) { return record.message.starts_with(text); });
            if (wanted) found.push_back(record.message);
        }
        return found;
    }
    std::size_t count(std::string_view message) const {
        const auto all = records();
        return static_cast<std::size_t>(
            std::count_if(all.begin(), all.end(), [&](const auto& record) { return record.message == message; }));
    }
    void clear() {
        const MutexLock lock(mutex_);
        records_.clear();
        feeds_.clear();
    }

private:
    mutable Mutex mutex_;
    std::vector<DiagnosticRecord> records_ ORBINEL_GUARDED_BY(mutex_);
    std::vector<Feed> feeds_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel::testing
