#include "base/guard.hpp"

namespace orbinel {

namespace {

std::string describe(const GuardedOperation& operation, std::string_view reason) {
    const std::string name(operation.name);
    const auto line = std::to_string(operation.line);
    switch (operation.form) {
        case DescriptionForm::nameAndLine:
            return name + ":" + line;
        case DescriptionForm::functionAndLine:
            return "function : " + name + " line : " + line;
        case DescriptionForm::withReason:
            return name + ":" + line + " - " + std::string(reason);
        case DescriptionForm::nameOnly:
            break;
    }
    return name;
}

}  // namespace

void reportException(Reports& reports, const GuardedOperation& operation, std::string_view reason) noexcept {
    try {
        reports.sendError(reason, describe(operation, reason));
    } catch (...) {  // out of memory for the description
        reports.sendError(reason, operation.name);
    }
}

}  // namespace orbinel
