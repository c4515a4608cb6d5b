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
    [[nodiscard]] std::size_t listSize(const char* name);
    /// The names of an object's members, joined by ", ".
    [[nodiscard]] std::string names(const char* name);

    /// A clause about the first wrong kind; empty when all was well.
    [[nodiscard]] const std::string& problem() const { return problem_; }

private:
    const rapidjson::Value* member(const char* name, bool (rapidjson::Value::*isKind)() const, const char* kind);

    const rapidjson::Value& payload_;
    std::string problem_;
};

/// What a request says, in a few words for one line: "2 events, 90 s, reason default".
[[nodiscard]] std::string summariseStart(PayloadReader& payload);
[[nodiscard]] std::string summariseStop(PayloadReader& payload);
[[nodiscard]] std::string summariseIdentity(PayloadReader& payload);
[[nodiscard]] std::string summariseConsent(PayloadReader& payload);
[[nodiscard]] std::string summariseMessageCenter(PayloadReader& payload);
[[nodiscard]] std::string summariseToken(PayloadReader& payload);
[[nodiscard]] std::string summariseLogs(PayloadReader& payload);
[[nodiscard]] std::string summariseFeed(PayloadReader& payload);
[[nodiscard]] std::string summariseNothing(PayloadReader& payload);

}  // namespace orbinel::tool
