#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "orbinel/export.hpp"

/// Values: what an application hands over, what the backend answers and what is stored.
///
/// A value is a small variant with value semantics: a copy is a copy, and no container can contain itself.
namespace orbinel {

class Value;

/// The explicit "nothing" inside a container (JSON's null). An absent value is something else: it is not there at all.
struct Null {
    friend bool operator==(Null, Null) noexcept { return true; }
};

/// A moment, in seconds since 1970-01-01 UTC (fractions allowed).
struct Date {
    double secondsSince1970 = 0;
    friend bool operator==(Date, Date) noexcept = default;
};

using Array = std::vector<Value>;

/// Text keys to values, in the order in which the keys were first set.
///
/// Flat for the few keys that a dictionary usually has; one with many keys keeps an index beside its entries, so that
/// reading and setting stay cheap at any size.
class ORBINEL_API Dictionary {
public:
    using Entry = std::pair<std::string, Value>;

    Dictionary();
    Dictionary(std::initializer_list<Entry> entries);
    Dictionary(const Dictionary&);
    Dictionary(Dictionary&&) noexcept;
    Dictionary& operator=(const Dictionary&);
    Dictionary& operator=(Dictionary&&) noexcept;
    ~Dictionary();

    [[nodiscard]] bool empty() const noexcept;
    [[nodiscard]] std::size_t size() const noexcept;
    [[nodiscard]] bool contains(std::string_view key) const noexcept;

    /// The value under the key, or nullptr.
    [[nodiscard]] const Value* find(std::string_view key) const noexcept;
    [[nodiscard]] Value* find(std::string_view key) noexcept;

    /// The value under the key; an absent value where there is none.
    [[nodiscard]] const Value& operator[](std::string_view key) const noexcept;

    /// Replaces the value under the key in its place, or adds the key at the end.
    void set(std::string_view key, Value&& value);
    void set(std::string_view key, const Value& value);

    /// Removes the key; false where there was none.
    bool erase(std::string_view key);

    /// Removes every entry for which the predicate holds, in one pass.
    void eraseIf(const std::function<bool(const Entry&)>& predicate);

    void clear() noexcept;
    void reserve(std::size_t entries);

    [[nodiscard]] const Entry* begin() const noexcept;
    [[nodiscard]] const Entry* end() const noexcept;

    /// Changes values in place; keys stay as they are.
    void forEachValue(const std::function<void(const std::string& key, Value& value)>& change);

    /// Equal keys with equal values, in any order.
    friend ORBINEL_API bool operator==(const Dictionary&, const Dictionary&) noexcept;

private:
    struct Index;

    [[nodiscard]] std::size_t positionOf(std::string_view key) const noexcept;
    void indexIfLarge();

    std::vector<Entry> entries_;
    std::unique_ptr<Index> index_;  // only above a certain size; positions by key
};

/// One value of any kind.
///
/// Construction never narrows and never turns a number into a boolean: 32-bit integers and smaller stay 32-bit,
/// wider ones are 64-bit, `float` widens to `double`. Unsigned 64-bit integers and pointers are refused at compile
/// time.
class ORBINEL_API Value {
public:
    enum class Kind : std::uint8_t { absent, null, boolean, int32, int64, real, string, date, array, dictionary };

    Value() noexcept = default;
    Value(Null null) noexcept : content_(null) {}
    template <typename T>
    requires std::is_same_v<T, bool> Value(T boolean)
    noexcept : content_(boolean) {}
    template <typename T>
    requires(std::is_integral_v<T> && !std::is_same_v<T, bool> &&
             (sizeof(T) < 4 || (sizeof(T) == 4 && std::is_signed_v<T>))) Value(T number)
    noexcept : content_(static_cast<std::int32_t>(number)) {}
    template <typename T>
    requires(std::is_integral_v<T> &&
             ((sizeof(T) == 4 && std::is_unsigned_v<T>) || (sizeof(T) == 8 && std::is_signed_v<T>))) Value(T number)
    noexcept : content_(static_cast<std::int64_t>(number)) {}
    template <typename T>
    requires(std::is_same_v<T, double> || std::is_same_v<T, float>) Value(T number)
    noexcept : content_(static_cast<double>(number)) {}
    Value(std::string text) noexcept : content_(std::move(text)) {}
    Value(std::string_view text) : content_(std::string(text)) {}
    Value(const char* text) : content_(std::string(text != nullptr ? text : "")) {}
    Value(Date date) noexcept : content_(date) {}
    Value(Array array) noexcept : content_(std::move(array)) {}
    Value(Dictionary dictionary) noexcept : content_(std::move(dictionary)) {}
    template <typename T>
    requires(!std::is_same_v<T, Value>) Value(std::optional<T> optional) {
        if (optional) *this = Value(std::move(*optional));
    }
    template <typename T>
    Value(T*) = delete;

    [[nodiscard]] Kind kind() const noexcept { return static_cast<Kind>(content_.index()); }
    [[nodiscard]] bool isAbsent() const noexcept { return kind() == Kind::absent; }
    [[nodiscard]] bool isNull() const noexcept { return kind() == Kind::null; }
    [[nodiscard]] bool isNumber() const noexcept;

    /// The content where it is of that kind, else nullptr.
    [[nodiscard]] const bool* ifBoolean() const noexcept { return std::get_if<bool>(&content_); }
    [[nodiscard]] const std::int32_t* ifInt32() const noexcept { return std::get_if<std::int32_t>(&content_); }
    [[nodiscard]] const std::int64_t* ifInt64() const noexcept { return std::get_if<std::int64_t>(&content_); }
    [[nodiscard]] const double* ifReal() const noexcept { return std::get_if<double>(&content_); }
    [[nodiscard]] const std::string* ifString() const noexcept { return std::get_if<std::string>(&content_); }
    [[nodiscard]] const Date* ifDate() const noexcept { return std::get_if<Date>(&content_); }
    [[nodiscard]] const Array* ifArray() const noexcept { return std::get_if<Array>(&content_); }
    [[nodiscard]] Array* ifArray() noexcept { return std::get_if<Array>(&content_); }
    [[nodiscard]] const Dictionary* ifDictionary() const noexcept { return std::get_if<Dictionary>(&content_); }
    [[nodiscard]] Dictionary* ifDictionary() noexcept { return std::get_if<Dictionary>(&content_); }

    /// Any number as a double (a 64-bit integer may lose digits); nothing for every other kind, booleans included.
    [[nodiscard]] std::optional<double> number() const noexcept;

    /// Any number as an integer, truncated toward zero and held within the range; nothing for other kinds and for NaN.
    [[nodiscard]] std::optional<std::int64_t> integer() const noexcept;

    /// A boolean as it is, a number other than zero as true; everything else as false.
    [[nodiscard]] bool truth() const noexcept;

    /// The text where it is one, else the empty text.
    [[nodiscard]] const std::string& stringOrEmpty() const noexcept;

    /// Numbers compare by value across their kinds; a boolean never equals a number.
    friend ORBINEL_API bool operator==(const Value&, const Value&) noexcept;

private:
    std::variant<std::monostate, Null, bool, std::int32_t, std::int64_t, double, std::string, Date, Array, Dictionary>
        content_;
};

/// How deep containers may nest wherever a value comes in from outside. Deeper JSON is not valid.
inline constexpr int maximumValueDepth = 512;

/// Whether the value nests no deeper than `maximumValueDepth`; looks no deeper than that itself.
[[nodiscard]] ORBINEL_API bool isWithinDepth(const Value& value, int depth = maximumValueDepth) noexcept;

}  // namespace orbinel
