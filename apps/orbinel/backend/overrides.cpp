#include "apps/orbinel/backend/overrides.hpp"

#include <rapidjson/document.h>

#include <cstdint>
#include <stdexcept>
#include <variant>

#include "apps/orbinel/decode/json_text.hpp"

namespace orbinel::tool {
namespace {

constexpr std::int64_t maxDelay = 600'000;  // milliseconds

struct Refused : std::runtime_error {
    using std::runtime_error::runtime_error;
};

std::string textOf(const rapidjson::Value& value, const std::string& name) {
    if (!value.IsString()) throw Refused(name + " must be a text.");
    return {value.GetString(), value.GetStringLength()};
}

std::int64_t numberOf(const rapidjson::Value& value, const std::string& name, std::int64_t least, std::int64_t most) {
    if (!value.IsInt64() || value.GetInt64() < least || value.GetInt64() > most) {
        throw Refused(name + " must be a whole number from " + std::to_string(least) + " to " + std::to_string(most) +
                      ".");
    }
    return value.GetInt64();
}

std::vector<std::pair<std::string, std::string>> headersOf(const rapidjson::Value& value) {
    if (!value.IsObject()) throw Refused("\"headers\" must be an object of texts.");
    std::vector<std::pair<std::string, std::string>> headers;
    for (const auto& entry : value.GetObject()) {
        headers.emplace_back(textOf(entry.name, "A header's name"), textOf(entry.value, "A header's value"));
    }
    return headers;
}

void readMember(const std::string& name, const rapidjson::Value& value, OverrideRequest& request) {
    const auto quoted = '"' + name + '"';
    auto& answer = request.answer;
    if (name == "path") {
        request.path = textOf(value, quoted);
    } else if (name == "status") {
        answer.status = static_cast<int>(numberOf(value, quoted, 200, 599));
    } else if (name == "body") {
        answer.body = value.IsString() ? textOf(value, quoted) : compactJson(value);
    } else if (name == "times") {
        answer.times = numberOf(value, quoted, 1, INT32_MAX);
    } else if (name == "delay") {
        answer.delay = std::chrono::milliseconds(numberOf(value, quoted, 0, maxDelay));
    } else if (name == "headers") {
        answer.headers = headersOf(value);
    } else if (name == "scramble") {
        if (!value.IsBool()) throw Refused("\"scramble\" must be true or false.");
        answer.scrambled = value.GetBool();
    } else {
        throw Refused("There is no member " + quoted + ": path, status, body, times, delay, headers, scramble.");
    }
}

OverrideRequest readMembers(std::string_view json) {
    const auto parsed = parseJson(json);
    if (const auto* fault = std::get_if<JsonFault>(&parsed)) {
        throw Refused("The body is not JSON, " + describeFault(*fault, json) + ".");
    }
    const auto& document = std::get<rapidjson::Document>(parsed);
    if (!document.IsObject()) throw Refused("The body must be a JSON object.");
    OverrideRequest request;
    for (const auto& entry : document.GetObject()) readMember(entry.name.GetString(), entry.value, request);
    if (!request.path.starts_with('/')) throw Refused("\"path\" must be there and begin with a slash.");
    return request;
}

}  // namespace

void Overrides::set(const std::string& path, Override answer) {
    const MutexLock lock(mutex_);
    byPath_[path] = std::move(answer);
}

void Overrides::clear() {
    const MutexLock lock(mutex_);
    byPath_.clear();
}

std::optional<Override> Overrides::take(const std::string& path) {
    const MutexLock lock(mutex_);
    const auto found = byPath_.find(path);
    if (found == byPath_.end()) return std::nullopt;
    auto answer = found->second;
    if (found->second.times && --*found->second.times == 0) byPath_.erase(found);
    return answer;
}

OverrideRequest readOverride(std::string_view json) {
    try {
        return readMembers(json);
    } catch (const Refused& refused) {
        OverrideRequest request;
        request.refusal = refused.what();
        return request;
    }
}

}  // namespace orbinel::tool
