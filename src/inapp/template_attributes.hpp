#pragma once

#include "base/reports.hpp"
#include "inapp/template_values.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "user/user_attributes.hpp"

namespace orbinel {

/// The attributes of the user that a page sets, by lists of descriptors. What is no descriptor, or of another type than
/// named, is skipped.
///
/// Threads: any; no state.
class TemplateAttributes {
public:
    struct Needs {
        Reports& reports;
        OrbinelUserInternal& attributes;
        const platform::Json& json;
        const platform::Scheduler& scheduler;
    };

    explicit TemplateAttributes(const Needs& needs);

    /// "date", "boolean", "int" and "string".
    void setUserAttributesFromTemplate(const Array& descriptors) noexcept;

    /// Those, "array" and "double".
    void setCustomAttributesFromTemplate(const Array& descriptors) noexcept;

private:
    using Descriptor = template_values::Descriptor;

    void setUserAttribute(const Descriptor& descriptor);
    void setCustomAttribute(const Descriptor& descriptor);
    void noteSkipped(const Descriptor& descriptor);

    Reports& reports_;
    OrbinelUserInternal& attributes_;
    const platform::Json& json_;
    const platform::Scheduler& scheduler_;
};

}  // namespace orbinel
