#include "personalisation/content_value.hpp"

#include "base/value_content.hpp"

namespace orbinel::content_value {

std::optional<std::string> textValue(const Value& value, const platform::Json& json) {
    if (const auto* text = value.ifString()) return *text;
    if (!isPresent(value) || value.ifDate() != nullptr) return std::nullopt;
    return json.serialise(value, platform::JsonStyle::compact);
}

}  // namespace orbinel::content_value
