#pragma once

#include <exception>
#include <memory>
#include <stdexcept>
#include <string_view>

#include "orbinel/export.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/platform/services.hpp"
#include "orbinel/value.hpp"

/// For hosts that programs of other languages can start: what a C function of theirs needs to behave as those of
/// orbinel.h do. Threads: any.
namespace orbinel::c_interface {

/// What is wrong with what a caller gave: the rest of a sentence that begins with the function's name.
struct ORBINEL_API WrongArgument : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// What `orbinel_last_error` tells on this thread: "FUNCTION: WHY", and nothing any more.
ORBINEL_API void keepError(const char* function, const char* why) noexcept;
ORBINEL_API void forgetError() noexcept;

/// Runs the body of a C function. Nothing that is thrown leaves it: it is kept as the last error, and the neutral value
/// is returned.
template <typename Result, typename Body>
Result run(const char* function, Result neutral, Body&& body) noexcept {
    forgetError();
    try {
        return body();
    } catch (const std::exception& exception) {
        keepError(function, exception.what());
    } catch (...) {
        keepError(function, "an unknown exception was thrown.");
    }
    return neutral;
}

template <typename Body>
void run(const char* function, Body&& body) noexcept {
    run(function, false, [&] {
        body();
        return true;
    });
}

/// The pointer that a callback gets; the last copy calls `destroy`.
using UserData = std::shared_ptr<void>;

/// Calls `destroy`, which may be null, also where it throws for want of memory.
[[nodiscard]] inline UserData takeUserData(void* userData, void (*destroy)(void* userData)) {
    return {userData, [destroy](void* data) {
                if (destroy != nullptr) destroy(data);
            }};
}

/// The JSON text of an argument as a value, by the rules that orbinel.h tells. Throws `WrongArgument`.
[[nodiscard]] ORBINEL_API Value readValue(const platform::Json& json, const char* argument, std::string_view text);

/// The same where it has to be an object; an empty one for null.
[[nodiscard]] ORBINEL_API Dictionary readDictionary(const platform::Json& json, const char* argument, const char* text);

/// A copy of the text for the caller to hand to `orbinel_free`; null where there is no memory.
[[nodiscard]] ORBINEL_API char* newText(std::string_view text) noexcept;

/// The value as JSON text, likewise.
[[nodiscard]] ORBINEL_API char* newJson(const platform::Json& json, const Value& value);

/// `orbinel::start`; throws `WrongArgument` where that refuses.
ORBINEL_API void start(platform::Services services);

}  // namespace orbinel::c_interface
