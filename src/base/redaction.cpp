#include "base/redaction.hpp"

#include <algorithm>
#include <array>

#include "base/ascii.hpp"
#include "base/value_content.hpp"
#include "base/value_text.hpp"

namespace orbinel {

namespace {

constexpr std::size_t keptBytes = 2;
constexpr std::size_t longestWithoutBeginning = 4;
constexpr std::size_t shortestHexadecimal = 16;
constexpr std::size_t shortestTelephone = 7;

/// Keys under which a person, a device, a token, what a push says to somebody, or a whole request stands, without
/// underscores and in lower case.
constexpr std::array<std::string_view, 26> tellingKeys{
    "email",       "em",           "mem",           "phone",       "phonenumber",    "pn",
    "gsm",         "udid",         "orbinelid",     "devicetoken", "pushtoken",      "token",
    "uuid",        "idfv",         "idfa",          "identifiers", "newvalue",       "stopjson",
    "stoprequest", "startrequest", "stopencrypted", "payload",     "userattributes", "customattributes",
    "alert",       "userid"};

/// Topics of which every value tells; of the others, those of "value" alone.
constexpr std::array<std::string_view, 2> tellingTopics{"setUserIdentifier", "deviceLocation"};
constexpr std::array<std::string_view, 3> topicsOfAttributes{"setUserAttribute", "setCustomAttribute", "attributes"};

template <typename List>
bool holds(const List& list, std::string_view wanted) {
    return std::find(list.begin(), list.end(), wanted) != list.end();
}

bool isWordByte(char c) noexcept {
    return ascii::isLetterOrDigit(c) || static_cast<unsigned char>(c) >= 0x80 ||
           std::string_view("@.+-_%!#$&'*=?^`|~").find(c) != std::string_view::npos;
}

bool isEmail(std::string_view word) noexcept {
    const auto at = word.find('@');
    return at != std::string_view::npos && at > 0 && at + 1 < word.size();
}

bool isTelephone(std::string_view word) noexcept {
    return word.size() > shortestTelephone && word.front() == '+' &&
           std::all_of(word.begin() + 1, word.end(), ascii::isDigit);
}

/// Numbers of decimal digits alone are times and prices.
bool isHexadecimalIdentifier(std::string_view word) noexcept {
    return word.size() >= shortestHexadecimal && std::any_of(word.begin(), word.end(), ascii::isHexadecimalLetter) &&
           std::any_of(word.begin(), word.end(), ascii::isDigit) &&
           std::all_of(word.begin(), word.end(), [](char c) { return ascii::isHexadecimalDigit(c) || c == '-'; });
}

std::string shortened(std::string_view text) {
    std::size_t kept = text.size() <= longestWithoutBeginning ? 0 : keptBytes;
    while (kept > 0 && (static_cast<unsigned char>(text[kept]) & 0xC0U) == 0x80U) --kept;  // not inside a character
    return std::string(text.substr(0, kept)) + "…(" + std::to_string(text.size()) + ")";
}

std::string redactedWord(std::string_view word) {
    // What ends a sentence is no part of the word.
    const auto end = word.find_last_not_of(".!?'");
    const auto core = word.substr(0, end == std::string_view::npos ? 0 : end + 1);
    if (!isEmail(core) && !isTelephone(core) && !isHexadecimalIdentifier(core)) return std::string(word);
    return shortened(core) + std::string(word.substr(core.size()));
}

std::string plainKey(std::string_view key) {
    std::string plain;
    for (const char c : key) {
        if (c != '_') plain += ascii::lowerCased(c);
    }
    return plain;
}

Value redactedValue(const Value& value, bool telling, int depth);

Dictionary redactedEntries(const Dictionary& data, bool telling, bool tellingValues, int depth) {
    Dictionary result;
    for (const auto& [key, value] : data) {
        const bool tells = telling || holds(tellingKeys, plainKey(key)) || (tellingValues && key == "value");
        result.set(key, redactedValue(value, tells, depth));
    }
    return result;
}

Value redactedValue(const Value& value, bool telling, int depth) {
    if (!isPresent(value)) return value;
    if (const auto* dictionary = value.ifDictionary()) {
        return depth > 0 ? Value(redactedEntries(*dictionary, telling, false, depth - 1)) : Value("{…}");
    }
    if (const auto* array = value.ifArray()) {
        if (depth == 0) return "[…]";
        Array result;
        for (const auto& element : *array) result.push_back(redactedValue(element, telling, depth - 1));
        return result;
    }
    const auto* text = value.ifString();
    if (telling) return text != nullptr ? shortened(*text) : shortened(textOf(value));
    return text != nullptr ? Value(redacted(*text)) : value;
}

constexpr int deepestShown = 16;

}  // namespace

std::string redacted(std::string_view text) {
    std::string result;
    for (std::size_t begin = 0; begin < text.size();) {
        const auto end = static_cast<std::size_t>(
            std::find_if_not(text.begin() + static_cast<std::ptrdiff_t>(begin), text.end(), isWordByte) - text.begin());
        if (end == begin) {
            result += text[begin++];
        } else {
            result += redactedWord(text.substr(begin, end - begin));
            begin = end;
        }
    }
    return result;
}

Dictionary redacted(const Dictionary& data, std::string_view topic) {
    return redactedEntries(data, holds(tellingTopics, topic), holds(topicsOfAttributes, topic), deepestShown);
}

}  // namespace orbinel
