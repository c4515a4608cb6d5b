#include "apps/orbinel/backend/summary.hpp"

namespace orbinel::tool {
namespace {

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

std::string counted(std::size_t count, const std::string& noun) {
    return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

std::string countedIfAny(std::size_t count, const std::string& noun) {
    return count == 0 ? std::string() : counted(count, noun);
}

std::string yesOrNo(std::optional<bool> value) {
    if (!value) return {};
    return *value ? "yes" : "no";
}

}  // namespace

PayloadReader::PayloadReader(const rapidjson::Value& payload) : payload_(payload) {
    if (!payload.IsObject()) problem_ = "the body is not a JSON object";
}

const rapidjson::Value* PayloadReader::member(const char* name, bool (rapidjson::Value::*isKind)() const,
                                              const char* kind) {
    if (!payload_.IsObject()) return nullptr;
    const auto found = payload_.FindMember(name);
    if (found == payload_.MemberEnd()) return nullptr;
    if ((found->value.*isKind)()) return &found->value;
    if (problem_.empty()) problem_ = std::string("\"") + name + "\" is not " + kind;
    return nullptr;
}

std::string PayloadReader::text(const char* name) {
    const auto* value = member(name, &rapidjson::Value::IsString, "a text");
    return value == nullptr ? std::string() : std::string(value->GetString(), value->GetStringLength());
}

std::optional<std::int64_t> PayloadReader::integer(const char* name) {
    const auto* value = member(name, &rapidjson::Value::IsInt64, "a whole number");
    return value == nullptr ? std::nullopt : std::optional(value->GetInt64());
}

std::optional<bool> PayloadReader::boolean(const char* name) {
    const auto* value = member(name, &rapidjson::Value::IsBool, "true or false");
    return value == nullptr ? std::nullopt : std::optional(value->GetBool());
}

std::size_t PayloadReader::listSize(const char* name) {
    const auto* value = member(name, &rapidjson::Value::IsArray, "a list");
    return value == nullptr ? 0 : value->Size();
}

std::string PayloadReader::names(const char* name) {
    Clauses clauses;
    if (const auto* value = member(name, &rapidjson::Value::IsObject, "an object")) {
        for (const auto& entry : value->GetObject()) {
            clauses.add(std::string(entry.name.GetString(), entry.name.GetStringLength()));
        }
    }
    return clauses.take();
}

std::string summariseStart(PayloadReader& payload) {
    Clauses clauses;
    clauses.add("reason", payload.text("reason"));
    if (payload.boolean("first_run").value_or(false)) clauses.add("first run");
    return clauses.add("id", payload.text("orbinel_id")).take();
}

std::string summariseStop(PayloadReader& payload) {
    Clauses clauses;
    clauses.add(counted(payload.listSize("custom_events"), "event"));
    if (const auto seconds = payload.integer("session_duration")) clauses.add(std::to_string(*seconds) + " s");
    return clauses.add("reason", payload.text("reason"))
        .add(countedIfAny(payload.listSize("purchased_items"), "purchase"))
        .add(countedIfAny(payload.listSize("inapp_logs"), "in-app log"))
        .add(countedIfAny(payload.listSize("push_logs"), "push log"))
        .take();
}

std::string summariseIdentity(PayloadReader& payload) {
    const auto names = payload.names("identifiers");
    return Clauses()
        .add(names.empty() ? "no identifiers" : "identifiers " + names)
        .add("id", payload.text("orbinel_id"))
        .take();
}

std::string summariseConsent(PayloadReader& payload) {
    return Clauses()
        .add("gdpr", yesOrNo(payload.boolean("gdpr_consent")))
        .add("mobile gdpr", yesOrNo(payload.boolean("mobile_gdpr_consent")))
        .take();
}

std::string summariseMessageCenter(PayloadReader& payload) {
    Clauses clauses;
    if (const auto limit = payload.integer("limit")) clauses.add("limit", std::to_string(*limit));
    const auto start = payload.integer("start_date");
    const auto end = payload.integer("end_date");
    if (start && end) clauses.add("from " + std::to_string(*start) + " to " + std::to_string(*end));
    return clauses.take();
}

std::string summariseToken(PayloadReader& payload) { return Clauses().add("token", payload.text("token")).take(); }

std::string summariseLogs(PayloadReader& payload) { return counted(payload.listSize("logs"), "record"); }

std::string summariseFeed(PayloadReader& payload) { return payload.text("method"); }

std::string summariseNothing(PayloadReader&) { return {}; }

}  // namespace orbinel::tool
