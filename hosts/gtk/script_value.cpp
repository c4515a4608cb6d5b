#include "hosts/gtk/script_value.hpp"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "hosts/gtk/gobject.hpp"

namespace orbinel::hosts {

namespace {

using ScriptPointer = ObjectPointer<JSCValue>;

/// Reads one message, with what may still be read of it. Nothing: too much, or not of JSON.
class ScriptReader {
public:
    std::optional<Value> read(JSCValue* script, int depth) {
        if (!take(bytesPerValue) || depth > maximumValueDepth) return std::nullopt;
        if (jsc_value_is_null(script)) return Value(Null{});
        if (jsc_value_is_boolean(script)) return Value(jsc_value_to_boolean(script) != FALSE);
        if (jsc_value_is_number(script)) return readNumber(jsc_value_to_double(script));
        if (jsc_value_is_string(script)) return readText(script);
        if (jsc_value_is_array(script)) return readArray(script, depth);
        if (jsc_value_is_object(script)) return readDictionary(script, depth);
        return std::nullopt;
    }

private:
    static constexpr std::size_t mostBytes = std::size_t{4} << 20;  // texts and keys, and so many for each value:
    static constexpr std::size_t bytesPerValue = 64;

    bool take(std::size_t bytes) {
        if (bytes > left_) return false;
        left_ -= bytes;
        return true;
    }

    static Value readNumber(double number) {
        constexpr double exactlyWhole = 9007199254740992;  // 2^53
        if (!std::isfinite(number)) return Null{};
        if (std::trunc(number) == number && std::abs(number) <= exactlyWhole) return static_cast<std::int64_t>(number);
        return number;
    }

    std::optional<Value> readText(JSCValue* script) {
        gsize length = 0;
        GBytes* bytes = jsc_value_to_string_as_bytes(script);
        const auto* text = static_cast<const char*>(g_bytes_get_data(bytes, &length));
        std::optional<Value> value;
        if (take(length)) value = std::string(text != nullptr ? text : "", length);
        g_bytes_unref(bytes);
        return value;
    }

    std::optional<Value> readArray(JSCValue* script, int depth) {
        const ScriptPointer length(jsc_value_object_get_property(script, "length"));
        const double size = jsc_value_to_double(length.get());
        if (!(size <= static_cast<double>(left_ / bytesPerValue))) return std::nullopt;
        Array array;
        for (guint i = 0; i < static_cast<guint>(size); ++i) {
            const ScriptPointer element(jsc_value_object_get_property_at_index(script, i));
            // JSON writes what it does not have as null inside an array.
            auto value =
                jsc_value_is_undefined(element.get()) ? std::optional<Value>(Null{}) : read(element.get(), depth + 1);
            if (!value) return std::nullopt;
            array.push_back(std::move(*value));
        }
        return Value(std::move(array));
    }

    std::optional<Value> readDictionary(JSCValue* script, int depth) {
        const std::unique_ptr<char*, decltype(&g_strfreev)> names(jsc_value_object_enumerate_properties(script),
                                                                  &g_strfreev);
        Dictionary dictionary;
        for (char** name = names.get(); name != nullptr && *name != nullptr; ++name) {
            const std::string key = *name;
            const ScriptPointer member(jsc_value_object_get_property(script, key.c_str()));
            if (jsc_value_is_undefined(member.get())) continue;  // as JSON leaves it out
            auto value = take(key.size()) ? read(member.get(), depth + 1) : std::nullopt;
            if (!value) return std::nullopt;
            dictionary.set(key, std::move(*value));
        }
        return Value(std::move(dictionary));
    }

    std::size_t left_ = mostBytes;
};

}  // namespace

Value valueOfScript(JSCValue* script) { return ScriptReader().read(script, 1).value_or(Value()); }

}  // namespace orbinel::hosts
