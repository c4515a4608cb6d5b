#pragma once

#include "base/reports.hpp"
#include "session/helper.hpp"

namespace orbinel {

/// Whether the operations of the application's delegates forward to the library by themselves. Kept across launches.
///
/// Threads: any.
class AutoIntegration {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
    };

    explicit AutoIntegration(const Needs& needs) : reports_(needs.reports), helper_(needs.helper) {}

    void startAutoIntegration(bool start) noexcept;

    /// Only the text that `startAutoIntegration` stores counts as yes.
    [[nodiscard]] bool isAutoIntegrationEnabled() const noexcept;

private:
    Reports& reports_;
    OrbinelHelper& helper_;
};

}  // namespace orbinel
