#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/json.hpp"

namespace orbinel::platform {

/// Hands every call on to another JSON service; derive from it to make one fail.
class ForwardingJson : public Json {
public:
    explicit ForwardingJson(std::shared_ptr<Json> target) : target_(std::move(target)) {}

    JsonOutcome parse(std::string_view text) const noexcept override { return target_->parse(text); }
    std::optional<std::string> serialise(const Value& value, JsonStyle style) const noexcept override {
        return target_->serialise(value, style);
    }
    std::optional<std::string> serialise(const Dictionary& dictionary, JsonStyle style) const noexcept override {
        return target_->serialise(dictionary, style);
    }

protected:
    const std::shared_ptr<Json> target_;
};

}  // namespace orbinel::platform
