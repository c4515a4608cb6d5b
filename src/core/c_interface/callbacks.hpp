#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "orbinel/c_interface.hpp"
#include "orbinel/orbinel.h"
#include "orbinel/value.hpp"

/// What programs of other languages give to be called.
namespace orbinel::c_interface {

/// Empty where there is no function.
[[nodiscard]] std::function<void(const std::string&)> textCallback(orbinel_callback callback, UserData userData);
[[nodiscard]] std::function<void(const std::optional<std::string>&)> problemCallback(orbinel_callback callback,
                                                                                     UserData userData);
[[nodiscard]] std::function<void()> completionCallback(orbinel_completion completion, UserData userData);

/// The content as JSON text. Empty where there is no function; throws where the library is not started.
[[nodiscard]] std::function<void(const Dictionary&)> dictionaryCallback(orbinel_callback callback, UserData userData);
[[nodiscard]] std::function<void(const Array&)> arrayCallback(orbinel_callback callback, UserData userData);

/// Whom the callbacks that stay registered are for.
struct Sender {
    UserData userData;
};

/// Nobody for null.
[[nodiscard]] std::weak_ptr<Sender> senderOf(const orbinel_sender* sender) noexcept;

/// What is performed for a sender: the callback, with the content as JSON text. Throws where the library is not
/// started.
[[nodiscard]] std::function<void(const Sender&, const Dictionary&)> jsonAction(orbinel_callback callback);

}  // namespace orbinel::c_interface
