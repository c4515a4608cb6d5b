#pragma once

#include <string_view>

/// The names under which the library knows the types of values.
namespace orbinel {

inline constexpr std::string_view kDataTypeStringKey = "string";
inline constexpr std::string_view kDataTypeBooleanKey = "boolean";
inline constexpr std::string_view kDataTypeIntKey = "int";
inline constexpr std::string_view kDataTypeFloatKey = "float";  // never detected
inline constexpr std::string_view kDataTypeDoubleKey = "double";
inline constexpr std::string_view kDataTypeNumberKey = "number";  // never detected
inline constexpr std::string_view kDataTypeArrayKey = "array";
inline constexpr std::string_view kDataTypeDateKey = "date";

}  // namespace orbinel
