#pragma once

#include <rapidjson/document.h>

#include <cstdint>
#include <optional>
#include <string>

namespace orbinel::tool {

/// Reads members of a payload that may hold anything, and remembers the first that is of the wrong kind.
class PayloadReader {
public:
    explicit PayloadReader(const rapidjson::Value& payload);

    [[nodiscard]] std::string text(const char* name);
    [[nodiscard]] std::optional<std::int64_t> integer(const char* name);
    [[nodiscard]] std::optional<bool> boolean(const char* name);
    /// A boolean, or a number: zero is false.
    [[nodiscard]] std::optional<bool> truth(const char* name);
    /// nullptr where there is none.
    [[nodiscard]] const rapidjson::Value* object(const char* name);
    [[nodiscard]] const rapidjson::Value* list(const char* name);

    /// A clause about the first wrong kind; empty when all was well.
    [[nodiscard]] const std::string& problem() const { return problem_; }

private:
    const rapidjson::Value* member(const char* name, bool (*isKind)(const rapidjson::Value&), const char* kind);

    const rapidjson::Value& payload_;
    std::string problem_;
};

/// The text of a JSON string.
[[nodiscard]] std::string textOf(const rapidjson::Value& value);

}  // namespace orbinel::tool
