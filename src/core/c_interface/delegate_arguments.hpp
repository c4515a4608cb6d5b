#pragma once

#include <string_view>

#include "orbinel/platform/delegate.hpp"
#include "orbinel/value.hpp"

/// The arguments of a delegate's operation as the dictionary that orbinel_delegate.h describes. Threads: any.
namespace orbinel::c_interface {

/// The operation's own name, of static storage; throws `WrongArgument` where there is none of that name.
[[nodiscard]] std::string_view knownOperation(const char* name);

/// What the operation carries. It has to be a known one.
[[nodiscard]] Dictionary describedArguments(std::string_view operation, const platform::DelegateArguments& arguments);

/// The same the other way round. Throws `WrongArgument` where an entry is of another type, or the operation carries
/// none of that name.
[[nodiscard]] platform::DelegateArguments readArguments(std::string_view operation, Dictionary described);

}  // namespace orbinel::c_interface
