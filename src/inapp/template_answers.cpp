#include "inapp/template_answers.hpp"

#include <utility>

#include "base/guard.hpp"
#include "inapp/template_values.hpp"

namespace orbinel {

TemplateAnswers::TemplateAnswers(const Needs& needs)
    : reports_(needs.reports), session_(needs.session), presented_(needs.presented), json_(needs.json) {}

/// Appends a record of the current message, completed by the function given.
template <typename Complete>
void TemplateAnswers::append(Array SessionRecord::*list, Complete&& complete) {
    const auto inapp = presented_.activeInapp();
    if (inapp == nullptr) return reports_.note("Dropped what a page sent: there is no current message.");
    Dictionary answer{{"inapp_id", inappFieldNumber(*inapp, "inapp_id")},
                      {"variant_id", inappFieldNumber(*inapp, "variant_id")}};
    complete(answer);
    if (!presented_.mayKeep(answer)) return reports_.note("Dropped what a page sent: it has sent too much.");
    session_.update([&](SessionRecord& record) { (record.*list).emplace_back(std::move(answer)); });
}

void TemplateAnswers::addSurveyResult(const Value& question, const Value& answer) noexcept {
    guarded(reports_, "+[OrbinelTemplateStore addSurveyResult:answer:]", [&] {
        append(&SessionRecord::survey_results, [&](Dictionary& result) {
            result.set("question", template_values::textOf(question, json_));
            result.set("answer", template_values::textOf(answer, json_));
        });
    });
}

void TemplateAnswers::addLeadInput(const Value& input) noexcept {
    guarded(reports_, "-[OrbinelInapp addLeadInput:]",
            [&] { append(&SessionRecord::lead_logs, [&](Dictionary& lead) { lead.set("input", input); }); });
}

}  // namespace orbinel
