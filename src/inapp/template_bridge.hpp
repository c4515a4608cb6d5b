#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/reports.hpp"
#include "inapp/collaborators.hpp"
#include "inapp/template_store.hpp"
#include "orbinel/platform/json.hpp"

namespace orbinel {

/// Hears what a page says, and believes none of it: what is no object of JSON, longer than a payload may be or nested
/// beyond the bound of values leaves a record and nothing else.
///
/// Threads: main.
class TemplateBridge final : public TemplatePage {
public:
    struct Needs {
        Reports& reports;
        OrbinelTemplateStore& store;
        const platform::Json& json;
    };

    explicit TemplateBridge(const Needs& needs);

    void processCustomScreenClicks(std::string_view url) noexcept override;

private:
    [[nodiscard]] std::optional<Dictionary> read(const std::string& payload) const;

    Reports& reports_;
    OrbinelTemplateStore& store_;
    const platform::Json& json_;
};

}  // namespace orbinel
