#include "hosts/common/rapidjson_json.hpp"

#include <glib.h>
#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <exception>
#include <iterator>
#include <memory>
#include <system_error>
#include <type_traits>
#include <utility>
#include <vector>

#include "hosts/common/shortest_digits.hpp"

namespace orbinel::hosts {

namespace {

using platform::JsonFailure;
using platform::JsonOutcome;
using platform::JsonStyle;

/// Whether an escape has put half a surrogate pair into the text: the reader lets a second half without a first one
/// pass. All else that is not valid UTF-8 it refuses itself.
bool hasHalfPair(std::string_view text) noexcept {
    for (auto at = text.find('\xed'); at != std::string_view::npos; at = text.find('\xed', at + 1)) {
        if (at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) >= 0xA0) return true;
    }
    return false;
}

/// The number of the digits where they stand for a whole number that fits.
std::optional<std::int64_t> integerOf(std::string_view digits) noexcept {
    std::int64_t integer = 0;
    const auto [end, error] = std::from_chars(digits.begin(), digits.end(), integer);
    return error == std::errc{} && end == digits.end() ? std::optional(integer) : std::nullopt;
}

/// The double nearest to the digits, which are a number of JSON; an infinity for what is beyond.
double realOf(std::string_view digits) {
    double real = 0;
    if (std::from_chars(digits.begin(), digits.end(), real).ec == std::errc{}) return real;
    return g_ascii_strtod(std::string(digits).c_str(), nullptr);  // tells what is too large from what is too small
}

/// Builds the value from the reader's events. Finished values wait on a stack until the end of their container says
/// how many of them it takes.
class ValueBuilder {
public:
    bool Null() { return add(orbinel::Null{}); }
    bool Bool(bool boolean) { return add(boolean); }
    bool RawNumber(const char* text, rapidjson::SizeType length, bool) {
        const std::string_view digits(text, length);
        if (const auto integer = integerOf(digits)) return add(*integer);
        const auto real = realOf(digits);
        return std::isfinite(real) ? add(real) : refuse("The number is beyond a double.");
    }

    // Numbers come as their digits.
    bool Int(int) { return false; }
    bool Uint(unsigned) { return false; }
    bool Int64(std::int64_t) { return false; }
    bool Uint64(std::uint64_t) { return false; }
    bool Double(double) { return false; }

    bool String(const char* text, rapidjson::SizeType length, bool) {
        return isText({text, length}) && add(std::string(text, length));
    }
    bool Key(const char* text, rapidjson::SizeType length, bool) {
        if (!isText({text, length})) return false;
        keys_.emplace_back(text, length);
        return true;
    }
    bool StartObject() { return begin(); }
    bool StartArray() { return begin(); }

    bool EndArray(rapidjson::SizeType count) {
        const auto first = values_.end() - static_cast<std::ptrdiff_t>(count);
        return end(count, Array(std::make_move_iterator(first), std::make_move_iterator(values_.end())));
    }

    bool EndObject(rapidjson::SizeType count) {
        Dictionary dictionary;
        dictionary.reserve(count);
        const auto firstKey = keys_.size() - count;
        const auto firstValue = values_.size() - count;
        for (std::size_t i = 0; i < count; ++i) dictionary.set(keys_[firstKey + i], std::move(values_[firstValue + i]));
        keys_.resize(firstKey);
        return end(count, std::move(dictionary));
    }

    [[nodiscard]] Value takeResult() { return std::move(values_.front()); }

    /// Why the builder has stopped the reader; nothing where it has not.
    [[nodiscard]] const char* refusal() const noexcept { return refusal_; }

private:
    bool add(Value value) {
        values_.push_back(std::move(value));
        return true;
    }

    bool refuse(const char* reason) {
        refusal_ = reason;
        return false;
    }

    bool isText(std::string_view text) {
        return !hasHalfPair(text) || refuse("A surrogate pair lacks its first half.");
    }
    bool begin() { return ++depth_ <= maximumValueDepth || refuse("The value nests too deep."); }

    bool end(std::size_t count, Value container) {
        --depth_;
        values_.resize(values_.size() - count);
        return add(std::move(container));
    }

    std::vector<Value> values_;
    std::vector<std::string> keys_;
    int depth_ = 0;
    const char* refusal_ = nullptr;
};

JsonOutcome parseText(std::string_view text) {
    // The reader's own conversion of numbers is not safe from hostile exponents, so it hands over the digits.
    constexpr unsigned flags =
        rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag | rapidjson::kParseValidateEncodingFlag;
    rapidjson::MemoryStream stream(text.data(), text.size());
    rapidjson::Reader reader;
    ValueBuilder builder;
    const auto result = reader.Parse<flags>(stream, builder);
    if (builder.refusal() != nullptr) return JsonFailure{builder.refusal(), stream.Tell()};
    if (result.IsError()) return JsonFailure{rapidjson::GetParseError_En(result.Code()), result.Offset()};
    // The reader takes a NUL byte for the end of the text.
    if (stream.Tell() != text.size()) return JsonFailure{"Something follows the value.", stream.Tell()};
    return builder.takeResult();
}

/// Tells a writer the value's events.
template <typename Writer>
class ValueTeller {
public:
    ValueTeller(Writer& writer, bool sorted) : writer_(writer), sorted_(sorted) {}

    /// False where JSON cannot hold the value. Recursion is bounded by the depth.
    [[nodiscard]] bool tell(const Value& value, int depth) {
        switch (value.kind()) {
            case Value::Kind::absent:
            case Value::Kind::date:
                return false;
            case Value::Kind::null:
                return writer_.Null();
            case Value::Kind::boolean:
                return writer_.Bool(*value.ifBoolean());
            case Value::Kind::int32:
                return writer_.Int(*value.ifInt32());
            case Value::Kind::int64:
                return writer_.Int64(*value.ifInt64());
            case Value::Kind::real:
                return tellReal(*value.ifReal());
            case Value::Kind::string:
                return tellText(*value.ifString());
            case Value::Kind::array:
                return tellArray(*value.ifArray(), depth);
            case Value::Kind::dictionary:
                return tellDictionary(*value.ifDictionary(), depth);
        }
        return false;
    }

    [[nodiscard]] bool tellDictionary(const Dictionary& dictionary, int depth) {
        if (depth >= maximumValueDepth) return false;
        writer_.StartObject();
        const bool told = sorted_ ? tellSorted(dictionary, depth)
                                  : std::all_of(dictionary.begin(), dictionary.end(),
                                                [&](const auto& entry) { return tellEntry(entry, depth); });
        return told && writer_.EndObject();
    }

private:
    bool tellArray(const Array& array, int depth) {
        if (depth >= maximumValueDepth) return false;
        writer_.StartArray();
        const auto tellElement = [&](const Value& element) { return tell(element, depth + 1); };
        return std::all_of(array.begin(), array.end(), tellElement) && writer_.EndArray();
    }

    bool tellSorted(const Dictionary& dictionary, int depth) {
        std::vector<const Dictionary::Entry*> entries;
        entries.reserve(dictionary.size());
        for (const auto& entry : dictionary) entries.push_back(&entry);
        std::sort(entries.begin(), entries.end(),
                  [](const auto* left, const auto* right) { return left->first < right->first; });
        return std::all_of(entries.begin(), entries.end(), [&](const auto* entry) { return tellEntry(*entry, depth); });
    }

    bool tellEntry(const Dictionary::Entry& entry, int depth) {
        return tellText(entry.first) && tell(entry.second, depth + 1);
    }

    // Out of line: inlined wherever a text is told, it makes the walk over the value slower (see ./bench).
    [[gnu::noinline]] bool tellText(const std::string& text) {
        return writer_.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
    }

    bool tellReal(double number) {
        constexpr double largestExact = 9007199254740992.0;  // 2^53
        if (!std::isfinite(number)) return false;
        if (std::abs(number) <= largestExact && std::trunc(number) == number) {
            return writer_.Int64(static_cast<std::int64_t>(number));
        }
        const ShortestDigits digits(number);
        return writer_.RawValue(digits.data(), digits.size(), rapidjson::kNumberType);
    }

    Writer& writer_;
    const bool sorted_;
};

bool isAscii(const char* text, std::size_t size) noexcept {
    constexpr std::uint64_t highBits = 0x8080808080808080;
    std::uint64_t eight = 0;
    for (; size >= sizeof eight; text += sizeof eight, size -= sizeof eight) {
        std::memcpy(&eight, text, sizeof eight);
        if ((eight & highBits) != 0) return false;
    }
    return std::all_of(text, text + size, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Bytes that are not valid UTF-8 can only stand in texts, where the writer passes them on as they are; their
/// replacements neither take away nor add a character of JSON's own.
std::string validText(const char* text, std::size_t size) {
    const auto length = static_cast<gssize>(size);
    if (isAscii(text, size) || g_utf8_validate(text, length, nullptr) != FALSE) return {text, size};
    const std::unique_ptr<gchar, decltype(&g_free)> valid(g_utf8_make_valid(text, length), &g_free);
    return valid.get();
}

template <typename Writer, typename Content>
std::optional<std::string> writeWith(Writer& writer, rapidjson::StringBuffer& buffer, const Content& content,
                                     bool sorted) {
    ValueTeller<Writer> teller(writer, sorted);
    bool told = false;
    if constexpr (std::is_same_v<Content, Dictionary>) {
        told = teller.tellDictionary(content, 0);
    } else {
        told = teller.tell(content, 0);
    }
    if (!told) return std::nullopt;
    return validText(buffer.GetString(), buffer.GetSize());
}

template <typename Content>
std::optional<std::string> write(const Content& content, JsonStyle style) noexcept {
    try {
        rapidjson::StringBuffer buffer;
        if (style == JsonStyle::pretty) {
            rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
            writer.SetIndent(' ', 2);
            return writeWith(writer, buffer, content, false);
        }
        rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
        return writeWith(writer, buffer, content, style == JsonStyle::compactSorted);
    } catch (const std::exception&) {
        return std::nullopt;  // out of memory
    }
}

}  // namespace

JsonOutcome RapidJson::parse(std::string_view text) const noexcept {
    try {
        return parseText(text);
    } catch (const std::exception&) {
        return JsonFailure{"Out of memory.", 0};
    }
}

std::optional<std::string> RapidJson::serialise(const Value& value, JsonStyle style) const noexcept {
    return write(value, style);
}

std::optional<std::string> RapidJson::serialise(const Dictionary& dictionary, JsonStyle style) const noexcept {
    return write(dictionary, style);
}

}  // namespace orbinel::hosts
