#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/mutex.hpp"
#include "base/record_mapping.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// The parameters of one event: shared by the event that the application holds and by its records in the session, so
/// that what is added after `build` is sent too, until the session is.
///
/// Threads: any.
class EventParameters {
public:
    EventParameters() = default;
    explicit EventParameters(Dictionary parameters) : parameters_(std::move(parameters)) {}

    void set(std::string_view key, Value&& value) {
        const MutexLock lock(mutex_);
        parameters_.set(key, std::move(value));
    }

    [[nodiscard]] Dictionary snapshot() const {
        const MutexLock lock(mutex_);
        return parameters_;
    }

    /// Calls `look` with the parameters, without copying them. It must not call anything that takes a lock.
    template <typename Look>
    auto inspect(Look&& look) const {
        const MutexLock lock(mutex_);
        return look(static_cast<const Dictionary&>(parameters_));
    }

private:
    mutable Mutex mutex_;
    Dictionary parameters_ ORBINEL_GUARDED_BY(mutex_);
};

/// One element of a session's `custom_events`.
struct EventRecord {
    std::string event_name;
    std::int32_t timestamp = 0;  // seconds since 1970
    std::shared_ptr<EventParameters> event_params;
};

/// Parameters travel as they are at the moment of writing.
struct EventParametersTransformer {
    static Value toValue(const std::shared_ptr<EventParameters>& parameters) {
        return parameters != nullptr ? Value(parameters->snapshot()) : Value();
    }
};

template <>
struct RecordFields<EventRecord> {
    static constexpr auto fields = std::tuple{
        recordField("event_name", &EventRecord::event_name), recordField("timestamp", &EventRecord::timestamp),
        recordField<EventParametersTransformer>("event_params", &EventRecord::event_params)};
};

}  // namespace orbinel
