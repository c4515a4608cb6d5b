#include "orbinel/value.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orbinel {

namespace {

constexpr std::size_t linearSearchLimit = 16;
constexpr std::size_t usualEntries = 4;
constexpr std::size_t notFound = std::numeric_limits<std::size_t>::max();

// Made at the first use and never destroyed, so that static construction and destruction find them.
const Value& absentValue() noexcept {
    static const Value& value = *new Value;
    return value;
}
const std::string& emptyText() noexcept {
    static const std::string& text = *new std::string;
    return text;
}

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>{}(text); }
};

/// Exact comparison; converting the integer to a double would make neighbours above 2^53 equal.
bool sameNumber(std::int64_t integer, double real) noexcept {
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (!(real >= -limit && real < limit)) return false;
    return static_cast<double>(static_cast<std::int64_t>(real)) == real && static_cast<std::int64_t>(real) == integer;
}

bool sameNumbers(const Value& left, const Value& right) noexcept {
    const double* leftReal = left.ifReal();
    const double* rightReal = right.ifReal();
    if (leftReal != nullptr && rightReal != nullptr) return *leftReal == *rightReal;
    if (leftReal != nullptr) return sameNumber(*right.integer(), *leftReal);
    if (rightReal != nullptr) return sameNumber(*left.integer(), *rightReal);
    return *left.integer() == *right.integer();
}

}  // namespace

struct Dictionary::Index {
    std::unordered_map<std::string, std::size_t, TextHash, std::equal_to<>> positions;
};

Dictionary::Dictionary() = default;
Dictionary::Dictionary(Dictionary&&) noexcept = default;
Dictionary& Dictionary::operator=(Dictionary&&) noexcept = default;
Dictionary::~Dictionary() = default;

Dictionary::Dictionary(std::initializer_list<Entry> entries) {
    entries_.reserve(entries.size());
    for (const auto& [key, value] : entries) set(key, value);
}

Dictionary::Dictionary(const Dictionary& other)
    : entries_(other.entries_), index_(other.index_ ? std::make_unique<Index>(*other.index_) : nullptr) {}

Dictionary& Dictionary::operator=(const Dictionary& other) {
    if (this != &other) *this = Dictionary(other);
    return *this;
}

bool Dictionary::empty() const noexcept { return entries_.empty(); }
std::size_t Dictionary::size() const noexcept { return entries_.size(); }
bool Dictionary::contains(std::string_view key) const noexcept { return positionOf(key) != notFound; }
const Dictionary::Entry* Dictionary::begin() const noexcept { return entries_.data(); }
const Dictionary::Entry* Dictionary::end() const noexcept { return entries_.data() + entries_.size(); }
void Dictionary::reserve(std::size_t entries) { entries_.reserve(entries); }

const Value* Dictionary::find(std::string_view key) const noexcept {
    const auto position = positionOf(key);
    return position == notFound ? nullptr : &entries_[position].second;
}

Value* Dictionary::find(std::string_view key) noexcept {
    const auto position = positionOf(key);
    return position == notFound ? nullptr : &entries_[position].second;
}

const Value& Dictionary::operator[](std::string_view key) const noexcept {
    const auto* value = find(key);
    return value != nullptr ? *value : absentValue();
}

void Dictionary::set(std::string_view key, Value&& value) {
    if (auto* existing = find(key)) {
        *existing = std::move(value);
        return;
    }
    if (entries_.empty()) entries_.reserve(usualEntries);
    entries_.emplace_back(key, std::move(value));
    if (index_) {
        index_->positions.emplace(entries_.back().first, entries_.size() - 1);
    } else {
        indexIfLarge();
    }
}

void Dictionary::set(std::string_view key, const Value& value) { set(key, Value(value)); }

bool Dictionary::erase(std::string_view key) {
    const auto position = positionOf(key);
    if (position == notFound) return false;
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(position));
    index_.reset();
    indexIfLarge();
    return true;
}

void Dictionary::eraseIf(const std::function<bool(const Entry&)>& predicate) {
    if (std::erase_if(entries_, predicate) == 0) return;
    index_.reset();
    indexIfLarge();
}

void Dictionary::clear() noexcept {
    entries_.clear();
    index_.reset();
}

void Dictionary::forEachValue(const std::function<void(const std::string&, Value&)>& change) {
    for (auto& [key, value] : entries_) change(key, value);
}

std::size_t Dictionary::positionOf(std::string_view key) const noexcept {
    if (index_) {
        const auto found = index_->positions.find(key);
        return found == index_->positions.end() ? notFound : found->second;
    }
    for (std::size_t position = 0; position < entries_.size(); ++position) {
        if (entries_[position].first == key) return position;
    }
    return notFound;
}

void Dictionary::indexIfLarge() {
    if (entries_.size() <= linearSearchLimit) return;
    auto index = std::make_unique<Index>();
    index->positions.reserve(entries_.size() * 2);
    for (std::size_t position = 0; position < entries_.size(); ++position) {
        index->positions.emplace(entries_[position].first, position);
    }
    index_ = std::move(index);
}

bool operator==(const Dictionary& left, const Dictionary& right) noexcept {
    return left.size() == right.size() && std::all_of(left.begin(), left.end(), [&](const Dictionary::Entry& entry) {
               const auto* other = right.find(entry.first);
               return other != nullptr && *other == entry.second;
           });
}

bool Value::isNumber() const noexcept { return kind() == Kind::int32 || kind() == Kind::int64 || kind() == Kind::real; }

std::optional<double> Value::number() const noexcept {
    if (const auto* small = ifInt32()) return *small;
    if (const auto* large = ifInt64()) return static_cast<double>(*large);
    if (const auto* real = ifReal()) return *real;
    return std::nullopt;
}

std::optional<std::int64_t> Value::integer() const noexcept {
    if (const auto* small = ifInt32()) return *small;
    if (const auto* large = ifInt64()) return *large;
    const auto* real = ifReal();
    if (real == nullptr || std::isnan(*real)) return std::nullopt;
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (*real >= limit) return std::numeric_limits<std::int64_t>::max();
    if (*real < -limit) return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(*real);
}

bool Value::truth() const noexcept {
    if (const auto* boolean = ifBoolean()) return *boolean;
    const auto any = number();
    return any && *any != 0;
}

const std::string& Value::stringOrEmpty() const noexcept {
    const auto* text = ifString();
    return text != nullptr ? *text : emptyText();
}

bool operator==(const Value& left, const Value& right) noexcept {
    if (left.isNumber() && right.isNumber()) return sameNumbers(left, right);
    return left.content_ == right.content_;
}

bool isWithinDepth(const Value& value, int depth) noexcept {
    if (const auto* array = value.ifArray()) {
        return depth > 0 &&
               std::all_of(array->begin(), array->end(), [&](const Value& v) { return isWithinDepth(v, depth - 1); });
    }
    if (const auto* dictionary = value.ifDictionary()) {
        return depth > 0 && std::all_of(dictionary->begin(), dictionary->end(), [&](const Dictionary::Entry& entry) {
                   return isWithinDepth(entry.second, depth - 1);
               });
    }
    return true;
}

}  // namespace orbinel
