#pragma once

#include <optional>
#include <string>

#include "base/record_mapping.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// Booleans of the backend: a number other than zero counts as true, everything of another kind as false.
struct TruthTransformer {
    template <typename Content>
    static std::optional<bool> fromValue(const Value& value) {
        return value.truth();
    }
};

/// What the answer to a session start carries. A key that is missing or of a wrong kind is absent here.
struct StartAnswer {
    bool sdk_disabled = false;
    std::string session_id;
    std::optional<double> log_flush_time_interval;  // seconds
    bool is_logging_enabled = false;
    std::optional<Array> inapps;
    bool reset_iid = false;
    std::string new_id;
    Dictionary smart_recommendations;
    Array contents;
    Value passive_variables;
};

template <>
struct RecordFields<StartAnswer> {
    using R = StartAnswer;
    static constexpr auto fields = std::tuple{
        recordField<TruthTransformer>("sdk_disabled", &R::sdk_disabled),
        recordField("session_id", &R::session_id),
        recordField("log_flush_time_interval", &R::log_flush_time_interval),
        recordField<TruthTransformer>("is_logging_enabled", &R::is_logging_enabled),
        recordField("inapps", &R::inapps),
        recordField<TruthTransformer>("reset_iid", &R::reset_iid),
        recordField("new_id", &R::new_id),
        recordField("smart_recommendations", &R::smart_recommendations),
        recordField("contents", &R::contents),
        recordField("passive_variables", &R::passive_variables),
    };
};

}  // namespace orbinel
