#pragma once

#include "base/reports.hpp"
#include "inapp/presented_inapp.hpp"
#include "orbinel/platform/json.hpp"
#include "session/session.hpp"

namespace orbinel {

/// What a person answers in a message: kept in the session's record, beside the message that asked. Without a current
/// message there is nothing to keep an answer with, and it is dropped.
///
/// Threads: any; no state.
class TemplateAnswers {
public:
    struct Needs {
        Reports& reports;
        OrbinelSession& session;
        PresentedInapp& presented;
        const platform::Json& json;
    };

    explicit TemplateAnswers(const Needs& needs);

    /// One answer of a survey ("survey_results"): the question as the page words it, and the answer as text.
    void addSurveyResult(const Value& question, const Value& answer) noexcept;

    /// What was filled into a form ("lead_logs"), as the page sends it.
    void addLeadInput(const Value& input) noexcept;

private:
    template <typename Complete>
    void append(Array SessionRecord::*list, Complete&& complete);

    Reports& reports_;
    OrbinelSession& session_;
    PresentedInapp& presented_;
    const platform::Json& json_;
};

}  // namespace orbinel
