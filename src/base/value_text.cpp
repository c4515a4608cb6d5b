#include "base/value_text.hpp"

#include <array>
#include <charconv>

namespace orbinel {

namespace {

constexpr std::string_view ellipsis = "…";

/// Appends text up to a limit; what does not fit is cut once, and nothing follows.
class BoundedText {
public:
    explicit BoundedText(std::size_t limit) : limit_(limit) {}

    void raw(std::string_view text) {
        if (full_) return;
        if (text_.size() + text.size() <= limit_) {
            text_ += text;
            return;
        }
        auto end = limit_ - text_.size();
        while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;  // not inside a character
        text_ += text.substr(0, end);
        text_ += ellipsis;
        full_ = true;
    }

    /// Text from outside: a log line must stay one line.
    void escaped(std::string_view text) {
        std::size_t plainFrom = 0;
        for (std::size_t i = 0; i < text.size() && !full_; ++i) {
            if (static_cast<unsigned char>(text[i]) >= 0x20 && text[i] != 0x7F) continue;
            raw(text.substr(plainFrom, i - plainFrom));
            raw(text[i] == '\n' ? "\\n" : text[i] == '\t' ? "\\t" : "\\x");
            plainFrom = i + 1;
        }
        if (!full_) raw(text.substr(plainFrom));
    }

    template <typename Number>
    void number(Number number) {
        std::array<char, 32> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        raw({digits.data(), static_cast<std::size_t>(end - digits.data())});
    }

    [[nodiscard]] bool full() const { return full_; }
    [[nodiscard]] std::string take() { return std::move(text_); }

private:
    std::size_t limit_;
    std::string text_;
    bool full_ = false;
};

void write(BoundedText& out, const Dictionary& dictionary, int depth);

void write(BoundedText& out, const Value& value, bool nested, int depth) {
    using Kind = Value::Kind;
    switch (value.kind()) {
        case Kind::absent:
            return out.raw("nothing");
        case Kind::null:
            return out.raw("null");
        case Kind::boolean:
            return out.raw(*value.ifBoolean() ? "true" : "false");
        case Kind::int32:
            return out.number(*value.ifInt32());
        case Kind::int64:
            return out.number(*value.ifInt64());
        case Kind::real:
            return out.number(*value.ifReal());
        case Kind::date:
            return out.number(value.ifDate()->secondsSince1970);
        case Kind::string:
            if (nested) out.raw("\"");
            out.escaped(*value.ifString());
            if (nested) out.raw("\"");
            return;
        case Kind::array:
            if (depth == 0) return out.raw("[…]");
            out.raw("[");
            for (bool first = true; const auto& element : *value.ifArray()) {
                if (out.full()) return;
                if (!std::exchange(first, false)) out.raw(", ");
                write(out, element, true, depth - 1);
            }
            return out.raw("]");
        case Kind::dictionary:
            return write(out, *value.ifDictionary(), depth);
    }
}

void write(BoundedText& out, const Dictionary& dictionary, int depth) {
    if (depth == 0) return out.raw("{…}");
    out.raw("{");
    for (bool first = true; const auto& [key, value] : dictionary) {
        if (out.full()) return;
        if (!std::exchange(first, false)) out.raw(", ");
        out.escaped(key);
        out.raw(": ");
        write(out, value, true, depth - 1);
    }
    out.raw("}");
}

constexpr int maximumDepth = 16;

}  // namespace

std::string textOf(const Value& value, std::size_t limit) {
    BoundedText out(limit);
    write(out, value, false, maximumDepth);
    return out.take();
}

std::string textOf(const Dictionary& dictionary, std::size_t limit) {
    BoundedText out(limit);
    write(out, dictionary, maximumDepth);
    return out.take();
}

}  // namespace orbinel
