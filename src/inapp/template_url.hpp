#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/reports.hpp"
#include "orbinel/platform/application.hpp"
#include "session/helper.hpp"
#include "user/identity.hpp"

namespace orbinel {

/// The address of a message's page: that of its template, followed by device, person and language.
class TemplateUrl {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelIdentity& identity;
        platform::Application& application;
    };

    explicit TemplateUrl(const Needs& needs) : needs_(needs) {}

    /// Nothing where the text is no URL (RFC 3986).
    [[nodiscard]] std::optional<std::string> getTemplateURLFromContent(const Dictionary& content) noexcept;

private:
    [[nodiscard]] std::string text(const Dictionary& content);

    const Needs needs_;
};

}  // namespace orbinel
