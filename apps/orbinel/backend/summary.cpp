#include "apps/orbinel/backend/summary.hpp"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "apps/orbinel/backend/json_writing.hpp"
#include "apps/orbinel/decode/json_text.hpp"

namespace orbinel::tool {
namespace {

constexpr std::size_t maxText = 80;  // bytes of one text
constexpr std::size_t maxNames = 8;  // of one list

/// Clauses joined by ", ", empty ones left out.
class Clauses {
public:
    Clauses& add(const std::string& clause) {
        if (clause.empty()) return *this;
        if (!text_.empty()) text_ += ", ";
        text_ += clause;
        return *this;
    }
    Clauses& add(const char* before, const std::string& value) {
        return value.empty() ? *this : add(before + (" " + value));
    }
    std::string take() { return std::move(text_); }

private:
    std::string text_;
};

std::string shortText(PayloadReader& payload, const char* name) { return shortened(payload.text(name), maxText); }

std::string counted(std::size_t count, const std::string& noun, const std::string& nouns) {
    return std::to_string(count) + ' ' + (count == 1 ? noun : nouns);
}

std::string countedIfAny(std::size_t count, const std::string& noun, const std::string& nouns) {
    return count == 0 ? std::string() : counted(count, noun, nouns);
}

std::size_t listSize(PayloadReader& payload, const char* name) {
    const auto* list = payload.list(name);
    return list == nullptr ? 0 : list->Size();
}

std::size_t objectSize(PayloadReader& payload, const char* name) {
    const auto* object = payload.object(name);
    return object == nullptr ? 0 : object->MemberCount();
}

/// The names of an object's members.
std::string names(PayloadReader& payload, const char* name) {
    Clauses clauses;
    const auto* object = payload.object(name);
    if (object == nullptr) return {};
    std::size_t count = 0;
    for (const auto& entry : object->GetObject()) {
        if (++count > maxNames) break;
        clauses.add(shortened(textOf(entry.name), maxText));
    }
    if (count > maxNames) clauses.add("…");
    return clauses.take();
}

/// How often each text stands under `name` in a list's elements: "2 view, 1 click".
std::string tally(const rapidjson::Value* list, const char* name) {
    if (list == nullptr) return {};
    std::vector<std::pair<std::string, std::size_t>> counts;
    for (const auto& element : list->GetArray()) {
        const auto text = shortened(PayloadReader(element).text(name), maxText);
        const auto found =
            std::find_if(counts.begin(), counts.end(), [&](const auto& entry) { return entry.first == text; });
        if (found != counts.end()) {
            ++found->second;
        } else if (counts.size() < maxNames) {
            counts.emplace_back(text, 1);
        }
    }
    Clauses clauses;
    for (const auto& [text, count] : counts) {
        clauses.add(std::to_string(count) + ' ' + (text.empty() ? "without " + std::string(name) : text));
    }
    return clauses.take();
}

std::string yesOrNo(std::optional<bool> value) {
    if (!value) return {};
    return *value ? "yes" : "no";
}

void addCommerce(Clauses& clauses, PayloadReader& payload) {
    clauses.add(countedIfAny(listSize(payload, "purchased_items"), "purchase", "purchases"))
        .add(countedIfAny(listSize(payload, "abandoned_items"), "product in the cart", "products in the cart"))
        .add(countedIfAny(listSize(payload, "removed_items"), "product taken out", "products taken out"));
}

void addPerson(Clauses& clauses, PayloadReader& payload) {
    clauses.add("identifiers", names(payload, "user_identifiers"))
        .add("attributes", names(payload, "user_attributes"))
        .add("custom attributes", names(payload, "custom_attributes"))
        .add(countedIfAny(listSize(payload, "removed_attributes"), "removed attribute", "removed attributes"));
}

}  // namespace

std::string summariseStart(PayloadReader& payload) {
    Clauses clauses;
    clauses.add("reason", shortText(payload, "reason"));
    if (payload.boolean("first_run").value_or(false)) clauses.add("first run");
    return clauses.add("id", shortText(payload, "orbinel_id")).take();
}

std::string summariseStop(PayloadReader& payload) {
    Clauses clauses;
    clauses.add(counted(listSize(payload, "custom_events"), "event", "events"));
    if (const auto seconds = payload.integer("session_duration")) clauses.add(std::to_string(*seconds) + " s");
    clauses.add("reason", shortText(payload, "reason"));
    addPerson(clauses, payload);
    addCommerce(clauses, payload);
    return clauses.add("contents", names(payload, "content_logs"))
        .add(countedIfAny(objectSize(payload, "content_variables"), "content variable", "content variables"))
        .add("recommendations", tally(payload.list("recommendation_logs"), "action"))
        .add(countedIfAny(listSize(payload, "inapp_logs"), "in-app log", "in-app logs"))
        .add(countedIfAny(listSize(payload, "push_logs"), "push log", "push logs"))
        .take();
}

std::string summariseIdentity(PayloadReader& payload) {
    const auto identifiers = names(payload, "identifiers");
    return Clauses()
        .add(identifiers.empty() ? "no identifiers" : "identifiers " + identifiers)
        .add("id", shortText(payload, "orbinel_id"))
        .take();
}

std::string summariseConsent(PayloadReader& payload) {
    Clauses clauses;
    clauses.add("gdpr", yesOrNo(payload.truth("gdpr_consent")))
        .add("mobile gdpr", yesOrNo(payload.truth("mobile_gdpr_consent")));
    if (const auto* target = payload.object("target")) {
        PayloadReader device(*target);
        clauses.add("device", shortText(device, "udid"));
    }
    return clauses.take();
}

std::string summariseMessageCenter(PayloadReader& payload) {
    Clauses clauses;
    if (const auto limit = payload.integer("limit")) clauses.add("limit", std::to_string(*limit));
    const auto start = payload.integer("start_date");
    const auto end = payload.integer("end_date");
    if (start && end) clauses.add("from " + std::to_string(*start) + " to " + std::to_string(*end));
    return clauses.take();
}

std::string summariseToken(PayloadReader& payload) {
    return Clauses().add("token", shortText(payload, "token")).take();
}

std::string summariseLogs(PayloadReader& payload) {
    const auto* logs = payload.list("logs");
    auto summary = counted(logs == nullptr ? 0 : logs->Size(), "record", "records");
    const auto types = tally(logs, "log_type");
    return types.empty() ? summary : summary + ": " + types;
}

std::string summariseWizardDevice(PayloadReader& payload) {
    return Clauses().add("device", shortText(payload, "udid")).take();
}

std::string summariseFeed(PayloadReader& payload) {
    auto summary = shortText(payload, "method");
    const auto* data = payload.object("data");
    if (data != nullptr && data->MemberCount() > 0) summary += ' ' + shortened(compactJson(*data), maxText);
    return summary;
}

std::string summariseNothing(PayloadReader&) { return {}; }

}  // namespace orbinel::tool
