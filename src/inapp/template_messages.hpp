#pragma once

#include <cstdint>

#include "base/late.hpp"
#include "base/reports.hpp"
#include "inapp/collaborators.hpp"
#include "inapp/presented_inapp.hpp"
#include "orbinel/platform/json.hpp"
#include "session/session.hpp"

namespace orbinel {

/// What the library says to a page.
inline constexpr std::int32_t deviceAttributesMessage = 1;
inline constexpr std::int32_t shakeMessage = 3;

/// Speaks to the page of the current message, by calls of its function "sdkCallbackMethod".
///
/// Threads: main.
class TemplateMessages {
public:
    struct Needs {
        Reports& reports;
        OrbinelSession& session;
        const platform::Json& json;
        const PresentedInapp& presented;
    };

    explicit TemplateMessages(const Needs& needs);

    Late<InappScreen> screen;

    /// Sends the session's record, or tells of a shake. Other types are ignored.
    void sendDataToTemplate(std::int32_t messageType) noexcept;

private:
    void sendSession();
    void sendShake();

    Reports& reports_;
    OrbinelSession& session_;
    const platform::Json& json_;
    const PresentedInapp& presented_;
};

}  // namespace orbinel
