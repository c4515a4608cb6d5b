#include "orbinel/c_interface.hpp"

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <variant>

#include "base/special_objects.hpp"
#include "core/start.hpp"
#include "orbinel/orbinel.h"

namespace orbinel::c_interface {

namespace {

// Not a std::string: a program may call from its static destructors, when those of the thread have run.
constinit thread_local std::array<char, 500> lastError{};

constexpr std::size_t longestRefusal = 300;  // in bytes

bool continuesCharacter(char byte) noexcept { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

/// Turns parsed JSON into values, and knows meanwhile where it is.
class ArgumentReader {
public:
    explicit ArgumentReader(const char* argument) : argument_(argument) {}

    [[nodiscard]] Value read(const Value& json) {
        if (const auto* entry = onlySpecialEntry(json)) {
            if (auto value = special(*entry)) return std::move(*value);
        }
        if (const auto* number = json.ifInt64()) return narrowed(*number);
        if (const auto* array = json.ifArray()) return elements(*array);
        if (const auto* dictionary = json.ifDictionary()) return entries(*dictionary);
        return json;
    }

private:
    [[nodiscard]] std::optional<Value> special(const Dictionary::Entry& entry) const {
        try {
            return specialValue(entry.first, entry.second);
        } catch (const WrongSpecialObject& wrong) {
            throw WrongArgument(argument_ + (path_.empty() ? "" : ", at " + path_) + ": " + wrong.what() + ".");
        }
    }

    [[nodiscard]] Array elements(const Array& array) {
        Array result;
        result.reserve(array.size());
        for (std::size_t i = 0; i < array.size(); ++i) result.push_back(at(std::to_string(i), array[i]));
        return result;
    }

    [[nodiscard]] Dictionary entries(const Dictionary& dictionary) {
        Dictionary result;
        result.reserve(dictionary.size());
        for (const auto& [key, entry] : dictionary) result.set(key, at(key, entry));
        return result;
    }

    [[nodiscard]] Value at(const std::string& step, const Value& json) {
        const auto length = path_.size();
        path_.append("/").append(step);
        auto value = read(json);
        path_.resize(length);
        return value;
    }

    const std::string argument_;
    std::string path_;
};

}  // namespace

void keepError(const char* function, const char* why) noexcept {
    const auto size = lastError.size();
    const auto length = std::snprintf(lastError.data(), size, "%s: %s", function, why);
    if (length < static_cast<int>(size)) return;
    auto end = size - 1;  // cut off, but not inside a character
    while (end > 0 && continuesCharacter(lastError[end - 1])) --end;
    lastError[end > 0 ? end - 1 : 0] = '\0';
}

void forgetError() noexcept { lastError[0] = '\0'; }

Value readValue(const platform::Json& json, const char* argument, std::string_view text) {
    const auto outcome = json.parse(text);
    if (const auto* failure = std::get_if<platform::JsonFailure>(&outcome)) {
        throw WrongArgument(std::string(argument) + " is not valid JSON at byte " + std::to_string(failure->offset) +
                            ": " + failure->reason);
    }
    return ArgumentReader(argument).read(std::get<Value>(outcome));
}

Dictionary readDictionary(const platform::Json& json, const char* argument, const char* text) {
    if (text == nullptr) return {};
    auto value = readValue(json, argument, text);
    if (auto* dictionary = value.ifDictionary()) return std::move(*dictionary);
    throw WrongArgument(std::string(argument) + " must be a JSON object.");
}

char* newText(std::string_view text) noexcept {
    auto* copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (copy == nullptr) return nullptr;
    if (!text.empty()) std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    return copy;
}

char* newJson(const platform::Json& json, const Value& value) {
    // One level less, because a special object is one itself.
    const auto written = json.serialise(withSpecialObjects(value, maximumValueDepth - 1), platform::JsonStyle::compact);
    return written ? newText(*written) : nullptr;
}

void start(platform::Services services) {
    std::string why;
    why.reserve(longestRefusal);  // before, because the refusal must not throw
    const auto refuse = [&](std::string_view sentence) {
        if (sentence.starts_with(startName)) sentence.remove_prefix(startName.size());
        why = sentence.substr(0, longestRefusal);
    };
    if (!startOver(std::move(services), refuse)) throw WrongArgument(why);
}

}  // namespace orbinel::c_interface

const char* orbinel_last_error(void) {
    const auto& error = orbinel::c_interface::lastError;
    return error[0] != '\0' ? error.data() : nullptr;
}

void orbinel_free(void* text) { std::free(text); }
