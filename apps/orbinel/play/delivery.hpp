#pragma once

#include <string_view>

#include "apps/orbinel/play/arguments.hpp"
#include "apps/orbinel/play/fields.hpp"
#include "orbinel/platform/delegate.hpp"

namespace orbinel::tool {

/// Something that the platform has for the application: an operation that it performs on one of its delegates.
struct Delivery {
    std::string_view operation;
    platform::DelegateArguments arguments;
};

// Each reads the step of its name. They throw `Unusable`.
[[nodiscard]] Delivery readPush(Fields& step, ArgumentReader& arguments);
[[nodiscard]] Delivery readOpenUrl(Fields& step);
[[nodiscard]] Delivery readUserActivity(Fields& step);
[[nodiscard]] Delivery readDeviceToken(Fields& step, ArgumentReader& arguments);

}  // namespace orbinel::tool
