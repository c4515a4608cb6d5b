#pragma once

#include <string_view>

#include "base/reports.hpp"
#include "tools/integration_wizard.hpp"
#include "tools/test_devices.hpp"

namespace orbinel {

/// Recognises the two links by which the vendor's panel reaches an application:
///
///     SCHEME://test_device/TOKEN       the device registers as a test device when the application becomes active
///     SCHEME://connect_wizard/TOKEN    the integration wizard connects at once
///
/// Threads: any.
class ToolLinks {
public:
    struct Needs {
        Reports& reports;
        TestDevices& testDevices;
        IntegrationWizard& wizard;
    };

    explicit ToolLinks(const Needs& needs)
        : reports_(needs.reports), testDevices_(needs.testDevices), wizard_(needs.wizard) {}

    /// Follows a tool link. Any other URL, and text that is none because it holds blanks or control characters
    /// (RFC 3986), is ignored. The token is taken as it stands, without decoding.
    void handleUrl(std::string_view url) noexcept;

private:
    Reports& reports_;
    TestDevices& testDevices_;
    IntegrationWizard& wizard_;
};

}  // namespace orbinel
