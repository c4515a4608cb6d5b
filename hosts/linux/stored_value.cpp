#include "hosts/linux/stored_value.hpp"

#include <limits>
#include <utility>

namespace orbinel::hosts {

namespace {

// These stand in files of installed applications: they never change.
namespace kinds {
constexpr const char* null = "null";
constexpr const char* boolean = "boolean";
constexpr const char* int32 = "int32";
constexpr const char* int64 = "int64";
constexpr const char* real = "real";
constexpr const char* text = "text";
constexpr const char* date = "date";
constexpr const char* json = "json";
}  // namespace kinds

std::optional<double> realOf(const StoredValue& stored) {
    if (const auto* real = std::get_if<double>(&stored.content)) return *real;
    if (const auto* whole = std::get_if<std::int64_t>(&stored.content)) return static_cast<double>(*whole);
    if (std::holds_alternative<std::monostate>(stored.content)) return std::numeric_limits<double>::quiet_NaN();
    return std::nullopt;
}

std::optional<Value> decodeInteger(const StoredValue& stored) {
    const auto* whole = std::get_if<std::int64_t>(&stored.content);
    if (whole == nullptr) return std::nullopt;
    if (stored.kind == kinds::boolean) return Value(*whole != 0);
    if (stored.kind == kinds::int64) return Value(*whole);
    if (*whole != static_cast<std::int32_t>(*whole)) return std::nullopt;
    return Value(static_cast<std::int32_t>(*whole));
}

std::optional<Value> decodeJson(const std::string& text, const platform::Json& json) {
    auto outcome = json.parse(text);
    auto* value = std::get_if<Value>(&outcome);
    if (value == nullptr) return std::nullopt;
    return std::move(*value);
}

}  // namespace

std::optional<StoredValue> encodeValue(const Value& value, const platform::Json& json) {
    switch (value.kind()) {
        case Value::Kind::absent:
            return std::nullopt;
        case Value::Kind::null:
            return StoredValue{kinds::null, {}};
        case Value::Kind::boolean:
            return StoredValue{kinds::boolean, std::int64_t{*value.ifBoolean()}};
        case Value::Kind::int32:
            return StoredValue{kinds::int32, std::int64_t{*value.ifInt32()}};
        case Value::Kind::int64:
            return StoredValue{kinds::int64, *value.ifInt64()};
        case Value::Kind::real:
            return StoredValue{kinds::real, *value.ifReal()};
        case Value::Kind::date:
            return StoredValue{kinds::date, value.ifDate()->secondsSince1970};
        case Value::Kind::string:
            return StoredValue{kinds::text, *value.ifString()};
        case Value::Kind::array:
        case Value::Kind::dictionary:
            break;
    }
    auto text = json.serialise(value, platform::JsonStyle::compact);
    if (!text) return std::nullopt;
    return StoredValue{kinds::json, std::move(*text)};
}

std::optional<Value> decodeValue(const StoredValue& stored, const platform::Json& json) {
    if (stored.kind == kinds::null) return Value(Null{});
    if (stored.kind == kinds::real || stored.kind == kinds::date) {
        const auto real = realOf(stored);
        if (!real) return std::nullopt;
        return stored.kind == kinds::real ? Value(*real) : Value(Date{*real});
    }
    if (stored.kind == kinds::boolean || stored.kind == kinds::int32 || stored.kind == kinds::int64) {
        return decodeInteger(stored);
    }
    const auto* text = std::get_if<std::string>(&stored.content);
    if (text == nullptr) return std::nullopt;
    if (stored.kind == kinds::text) return Value(*text);
    if (stored.kind == kinds::json) return decodeJson(*text, json);
    return std::nullopt;
}

}  // namespace orbinel::hosts
