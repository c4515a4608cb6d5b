#pragma once

#include <memory>
#include <optional>

#include "orbinel/platform/json.hpp"
#include "orbinel/value.hpp"

/// JSON texts of arguments and results, by the JSON service of the library that is started. All throw `WrongArgument`,
/// also where none is started; a null text needs none.
namespace orbinel::c_interface {

[[nodiscard]] std::shared_ptr<const platform::Json> jsonService();

/// Empty for null.
[[nodiscard]] Array arrayOf(const char* argument, const char* text);
[[nodiscard]] Dictionary dictionaryOf(const char* argument, const char* text);

/// Nothing for null.
[[nodiscard]] std::optional<Dictionary> optionalDictionaryOf(const char* argument, const char* text);

/// For the caller to free.
[[nodiscard]] char* jsonOf(const Value& value);

}  // namespace orbinel::c_interface
