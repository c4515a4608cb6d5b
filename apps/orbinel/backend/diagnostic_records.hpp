#pragma once

#include <rapidjson/document.h>

#include <string>

#include "apps/orbinel/backend/bounded.hpp"
#include "apps/orbinel/backend/inspectable.hpp"
#include "base/mutex.hpp"

namespace orbinel::tool {

/// The diagnostic records that devices sent.
///
/// Threads: any. Bounds: 10,000 records of 64 MB in all, what came first goes first.
class DiagnosticRecords final : public Inspectable {
public:
    /// Takes the "logs" of a batch.
    void add(const rapidjson::Value& batch);

    /// {"received": the time of its arrival, "record": as it came} for each.
    [[nodiscard]] std::string asJson() const override;
    void clear() override;

private:
    struct Record {
        double at;
        std::string json;
    };

    mutable Mutex mutex_;
    BoundedList<Record> records_ ORBINEL_GUARDED_BY(mutex_){10'000, 64'000'000};
};

}  // namespace orbinel::tool
