#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "orbinel/platform/json.hpp"

namespace orbinel::hosts {

/// JSON by RapidJSON: its reader's and writer's events straight to and from values, without a tree in between.
///
/// Negative zero is written as 0. A byte order mark before the value is a failure.
class RapidJson final : public platform::Json {
public:
    [[nodiscard]] platform::JsonOutcome parse(std::string_view text) const noexcept override;
    [[nodiscard]] std::optional<std::string> serialise(const Value& value,
                                                       platform::JsonStyle style) const noexcept override;
    [[nodiscard]] std::optional<std::string> serialise(const Dictionary& dictionary,
                                                       platform::JsonStyle style) const noexcept override;
};

}  // namespace orbinel::hosts
