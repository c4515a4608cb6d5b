#pragma once

#include <string_view>

#include "base/reports.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// Decides which names and parameters the application may hand over, and reports what it refuses.
///
/// Threads: any; no state.
class Validation {
public:
    explicit Validation(Reports& reports) : reports_(reports) {}

    /// Names of events, parameters and attributes: a lower-case ASCII letter, then lower-case ASCII letters, digits and
    /// underscores, over the whole text. A refusal feeds the wizard.
    [[nodiscard]] bool isNameValid(std::string_view name) const noexcept;
    /// The same without a report.
    [[nodiscard]] static bool hasFormOfName(std::string_view name) noexcept;
    [[nodiscard]] bool isNameValid(const Value& name) const noexcept;

    /// A dictionary whose values are texts, numbers (booleans included), arrays or dictionaries; nothing inside those
    /// is looked at. The first refusal is reported.
    [[nodiscard]] bool isParametersValid(const Value& parameters) const noexcept;
    [[nodiscard]] bool isParametersValid(const Dictionary& parameters) const noexcept;

    /// Drops, with a report each, the records of the payload's "custom_events" that lack a name or a dictionary of
    /// parameters. An absent list stays absent.
    void filterInvalidEventParams(Dictionary& payload) const noexcept;

    void logInvalidEvent(const Value& object, std::string_view message) const noexcept;
    void logInvalidDict(std::string_view message) const noexcept;

private:
    Reports& reports_;
};

}  // namespace orbinel
