#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/mutex.hpp"
#include "base/record_mapping.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// The parameters of one event: shared by the event that the application holds and by its records in the session, so
/// that what is added after `build` is sent too, until the session is. The first few lie in the object itself, so that
/// an event usually takes one piece of memory.
///
/// Threads: any.
class EventParameters {
public:
    EventParameters() = default;
    explicit EventParameters(const Dictionary& parameters) {
        for (const auto& [key, value] : parameters) set(key, Value(value));
    }

    /// Replaces the value under the key in its place, or adds the key at the end.
    void set(std::string_view key, Value&& value) {
        const MutexLock lock(mutex_);
        for (auto& place : first_) {
            if (place && place->first != key) continue;
            if (place) {
                place->second = std::move(value);
            } else {
                place.emplace(key, std::move(value));
            }
            return;
        }
        further_.set(key, std::move(value));
    }

    [[nodiscard]] bool empty() const {
        const MutexLock lock(mutex_);
        return !first_.front().has_value();
    }

    [[nodiscard]] Dictionary snapshot() const {
        Dictionary all;
        const MutexLock lock(mutex_);
        all.reserve(first_.size() + further_.size());
        for (const auto& entry : first_) {
            if (entry) all.set(entry->first, entry->second);
        }
        for (const auto& [key, value] : further_) all.set(key, value);
        return all;
    }

private:
    static constexpr std::size_t usualParameters = 4;

    mutable Mutex mutex_;
    std::array<std::optional<Dictionary::Entry>, usualParameters> first_ ORBINEL_GUARDED_BY(mutex_);  // without gaps
    Dictionary further_ ORBINEL_GUARDED_BY(mutex_);  // once there is no place among the first
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
