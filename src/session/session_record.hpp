#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/record_mapping.hpp"
#include "orbinel/value.hpp"
#include "session/event_record.hpp"

namespace orbinel {

/// Everything that happens in one foreground period. The fields travel under their own names.
struct SessionRecord {
    // Who and where; kept from one session to the next, and filled anew at each stop where not set otherwise.
    std::string partner_name;
    std::optional<std::string> orbinel_id;
    std::optional<std::string> udid;

    std::int32_t session_duration = 0;  // seconds
    std::int32_t timestamp = 0;         // of the stop, seconds since 1970
    bool is_first_run = false;          // the first session of the installation

    std::vector<EventRecord> custom_events;
    Dictionary content_variables;
    Dictionary session_content_variables;  // of this session only: never sent

    // Filled at each stop.
    Dictionary user_attributes;
    Dictionary user_identifiers;
    Value device_attributes;
    Dictionary custom_attributes;
    Value removed_attributes;

    Dictionary quillmark_attributes;
    Array inapp_logs;
    Array lead_logs;
    Array push_logs;
    Array interactive_logs;
    Dictionary content_logs;
    Array survey_results;
    Array purchased_items;
    Array abandoned_items;
    Array removed_items;
    std::string session_id;  // kept until the next start replaces it
    Array received_inapps;   // {"inapp_id", "variant_id", "timestamp"}
    Array recommendation_logs;
    std::optional<std::string> universal_link;
    Array blocked_inapps;
    Dictionary eventOccurrences;  // occurrence key to count, for in-app triggers

    // Events tagged before the campaigns arrived; without an answer to the start, they end with the session. Beside
    // the fields: never sent.
    std::vector<std::string> eventsBeforeInapp;
};

template <>
struct RecordFields<SessionRecord> {
    using R = SessionRecord;
    static constexpr auto fields = std::tuple{
        recordField("partner_name", &R::partner_name),
        recordField("orbinel_id", &R::orbinel_id),
        recordField("udid", &R::udid),
        recordField("session_duration", &R::session_duration),
        recordField("timestamp", &R::timestamp),
        recordField("is_first_run", &R::is_first_run),
        recordField("custom_events", &R::custom_events),
        recordField("content_variables", &R::content_variables),
        recordField("session_content_variables", &R::session_content_variables),
        recordField("user_attributes", &R::user_attributes),
        recordField("user_identifiers", &R::user_identifiers),
        recordField("device_attributes", &R::device_attributes),
        recordField("custom_attributes", &R::custom_attributes),
        recordField("removed_attributes", &R::removed_attributes),
        recordField("quillmark_attributes", &R::quillmark_attributes),
        recordField("inapp_logs", &R::inapp_logs),
        recordField("lead_logs", &R::lead_logs),
        recordField("push_logs", &R::push_logs),
        recordField("interactive_logs", &R::interactive_logs),
        recordField("content_logs", &R::content_logs),
        recordField("survey_results", &R::survey_results),
        recordField("purchased_items", &R::purchased_items),
        recordField("abandoned_items", &R::abandoned_items),
        recordField("removed_items", &R::removed_items),
        recordField("session_id", &R::session_id),
        recordField("received_inapps", &R::received_inapps),
        recordField("recommendation_logs", &R::recommendation_logs),
        recordField("universal_link", &R::universal_link),
        recordField("blocked_inapps", &R::blocked_inapps),
        recordField("eventOccurrences", &R::eventOccurrences),
    };
};

}  // namespace orbinel
