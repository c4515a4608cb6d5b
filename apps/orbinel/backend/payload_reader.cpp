#include "apps/orbinel/backend/payload_reader.hpp"

namespace orbinel::tool {

PayloadReader::PayloadReader(const rapidjson::Value& payload) : payload_(payload) {
    if (!payload.IsObject()) problem_ = "the body is not a JSON object";
}

const rapidjson::Value* PayloadReader::member(const char* name, bool (*isKind)(const rapidjson::Value&),
                                              const char* kind) {
    if (!payload_.IsObject()) return nullptr;
    const auto found = payload_.FindMember(name);
    if (found == payload_.MemberEnd()) return nullptr;
    if (isKind(found->value)) return &found->value;
    if (problem_.empty()) problem_ = std::string("\"") + name + "\" is not " + kind;
    return nullptr;
}

std::string PayloadReader::text(const char* name) {
    const auto* value = member(
        name, [](const rapidjson::Value& any) { return any.IsString(); }, "a text");
    return value == nullptr ? std::string() : textOf(*value);
}

std::optional<std::int64_t> PayloadReader::integer(const char* name) {
    const auto* value = member(
        name, [](const rapidjson::Value& any) { return any.IsInt64(); }, "a whole number");
    return value == nullptr ? std::nullopt : std::optional(value->GetInt64());
}

std::optional<bool> PayloadReader::boolean(const char* name) {
    const auto* value = member(
        name, [](const rapidjson::Value& any) { return any.IsBool(); }, "true or false");
    return value == nullptr ? std::nullopt : std::optional(value->GetBool());
}

std::optional<bool> PayloadReader::truth(const char* name) {
    const auto* value = member(
        name, [](const rapidjson::Value& any) { return any.IsBool() || any.IsNumber(); }, "true or false");
    if (value == nullptr) return std::nullopt;
    return value->IsBool() ? value->GetBool() : value->GetDouble() != 0;
}

const rapidjson::Value* PayloadReader::object(const char* name) {
    return member(
        name, [](const rapidjson::Value& any) { return any.IsObject(); }, "an object");
}

const rapidjson::Value* PayloadReader::list(const char* name) {
    return member(
        name, [](const rapidjson::Value& any) { return any.IsArray(); }, "a list");
}

std::string textOf(const rapidjson::Value& value) { return {value.GetString(), value.GetStringLength()}; }

}  // namespace orbinel::tool
