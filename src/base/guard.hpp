#pragma once

#include <cxxabi.h>

#include <exception>
#include <string>
#include <string_view>
#include <type_traits>

#include "base/reports.hpp"

namespace orbinel {

/// How the description of a crash report is made from the operation's full name and the guard's line.
enum class DescriptionForm {
    nameAndLine,      // "name:line"
    functionAndLine,  // "function : name line : line"
    withReason,       // "name:line - reason"
    nameOnly,         // the name is the whole description
};

struct GuardedOperation {
    std::string_view name;
    DescriptionForm form = DescriptionForm::nameAndLine;
    int line;

    // Converting on purpose: a call site names its operation by a literal, and its line is taken here. By the builtin
    // of both compilers, because clang 14 has no std::source_location.
    GuardedOperation(const char* operationName, DescriptionForm descriptionForm = DescriptionForm::nameAndLine,
                     int callLine = __builtin_LINE())
        : name(operationName), form(descriptionForm), line(callLine) {}
};

/// Reports a caught exception. Never throws.
void reportException(Reports& reports, const GuardedOperation& operation, std::string_view reason) noexcept;

/// Runs the body of an operation so that no exception leaves it: whatever is thrown is reported to the crash handler,
/// and the neutral value is returned. A thread that is being cancelled goes on unwinding.
template <typename Result, typename Body>
Result guarded(Reports& reports, const GuardedOperation& operation, Result neutral, Body&& body) {
    try {
        return std::forward<Body>(body)();
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (const std::exception& exception) {
        reportException(reports, operation, exception.what());
    } catch (...) {
        reportException(reports, operation, "unknown exception");
    }
    return neutral;
}

/// The same for a body without a result; false when something was thrown.
template <typename Body>
requires std::is_void_v<std::invoke_result_t<Body>>
bool guarded(Reports& reports, const GuardedOperation& operation, Body&& body) {
    return guarded(reports, operation, false, [&] {
        std::forward<Body>(body)();
        return true;
    });
}

}  // namespace orbinel
