#include "apps/orbinel/decode/json_text.hpp"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <optional>

namespace orbinel::tool {
namespace {

/// Passes what a parser finds on to `Next` and stops it at a nesting that is too deep.
template <typename Next>
class DepthLimit {
public:
    using Ch = char;
    using Size = rapidjson::SizeType;

    explicit DepthLimit(Next& next) : next_(next) {}

    bool Null() { return next_.Null(); }
    bool Bool(bool value) { return next_.Bool(value); }
    bool Int(int value) { return next_.Int(value); }
    bool Uint(unsigned value) { return next_.Uint(value); }
    bool Int64(std::int64_t value) { return next_.Int64(value); }
    bool Uint64(std::uint64_t value) { return next_.Uint64(value); }
    bool Double(double value) { return next_.Double(value); }
    bool RawNumber(const Ch* text, Size length, bool copy) { return next_.RawNumber(text, length, copy); }
    bool String(const Ch* text, Size length, bool copy) { return next_.String(text, length, copy); }
    bool Key(const Ch* text, Size length, bool copy) { return next_.Key(text, length, copy); }
    bool StartObject() { return enter() && next_.StartObject(); }
    bool StartArray() { return enter() && next_.StartArray(); }
    bool EndObject(Size count) {
        --depth_;
        return next_.EndObject(count);
    }
    bool EndArray(Size count) {
        --depth_;
        return next_.EndArray(count);
    }

    [[nodiscard]] bool exceeded() const { return depth_ > maxJsonDepth; }

private:
    bool enter() { return ++depth_ <= maxJsonDepth; }

    Next& next_;
    int depth_ = 0;
};

/// RapidJSON's own writer takes a number given as text for a string.
class DigitKeepingWriter : public rapidjson::PrettyWriter<rapidjson::StringBuffer> {
public:
    using PrettyWriter::PrettyWriter;

    bool RawNumber(const Ch* text, rapidjson::SizeType length, bool) {
        return RawValue(text, length, rapidjson::kNumberType);
    }
};

template <unsigned ExtraFlags, typename Next>
std::optional<JsonFault> readInto(Next& next, std::string_view text) {
    // The parser takes a NUL for the end of the text and would not see what stands behind it.
    if (const auto nul = text.find('\0'); nul != std::string_view::npos) return JsonFault{"A NUL byte", nul};

    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag | ExtraFlags;
    rapidjson::MemoryStream bytes(text.data(), text.size());
    rapidjson::EncodedInputStream<rapidjson::UTF8<>, rapidjson::MemoryStream> stream(bytes);
    rapidjson::Reader reader;
    DepthLimit<Next> limited(next);
    const auto result = reader.Parse<flags>(stream, limited);
    if (!result.IsError()) return std::nullopt;
    if (limited.exceeded()) {
        return JsonFault{"Nested deeper than " + std::to_string(maxJsonDepth) + " levels", result.Offset()};
    }
    std::string reason = rapidjson::GetParseError_En(result.Code());
    while (reason.ends_with('.')) reason.pop_back();
    return JsonFault{std::move(reason), result.Offset()};
}

}  // namespace

std::variant<rapidjson::Document, JsonFault> parseJson(std::string_view text) {
    std::optional<JsonFault> fault;
    rapidjson::Document document;
    auto generate = [&](rapidjson::Document& target) {
        fault = readInto<rapidjson::kParseFullPrecisionFlag>(target, text);
        return !fault;
    };
    document.Populate(generate);
    if (fault) return *std::move(fault);
    return document;
}

std::variant<std::string, JsonFault> prettyJson(std::string_view text) {
    rapidjson::StringBuffer buffer;
    DigitKeepingWriter writer(buffer);
    writer.SetIndent(' ', 2);
    if (auto fault = readInto<rapidjson::kParseNumbersAsStringsFlag>(writer, text)) return *std::move(fault);
    return std::string(buffer.GetString(), buffer.GetSize());
}

std::string compactJson(const rapidjson::Value& value) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    value.Accept(writer);
    return {buffer.GetString(), buffer.GetSize()};
}

std::string describeFault(const JsonFault& fault, std::string_view text) {
    const auto before = text.substr(0, std::min(fault.offset, text.size()));
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    return "line " + std::to_string(line) + ", offset " + std::to_string(fault.offset) + ": " + fault.reason;
}

}  // namespace orbinel::tool
