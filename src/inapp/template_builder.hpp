#pragma once

#include <memory>

#include "base/late.hpp"
#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "inapp/collaborators.hpp"
#include "inapp/page_settings.hpp"
#include "inapp/presented_inapp.hpp"
#include "inapp/template_url.hpp"
#include "inapp/template_view.hpp"
#include "inapp/template_web_view.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/platform/views.hpp"
#include "session/helper.hpp"
#include "user/identity.hpp"

namespace orbinel {

/// Makes a message of its record, in two steps, and tells what stands against it.
///
/// Threads: main.
class TemplateBuilder {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelIdentity& identity;
        const PresentedInapp& presented;
        const Lifetime& lifetime;
        const platform::Json& json;
        platform::Application& application;
        platform::Views& views;
        TemplateNavigation& navigation;  // of all pages
        const PageSettings& pageSettings;
        Late<InappButtonClicks>& buttonClicks;
    };

    explicit TemplateBuilder(const Needs& needs);

    /// The message with its web view and its URL; nothing where no page can be shown here or the URL cannot be used.
    [[nodiscard]] std::unique_ptr<TemplateView> prepare(const PresentedInapp::Record& record,
                                                        const InappLayout& layout);

    /// Puts the message into the window, invisible. Where there is nothing to put there, or no window, it is not up.
    void createInAppWithWebView(TemplateView& made);

private:
    [[nodiscard]] std::shared_ptr<OrbinelWKWebView> makeWebView(const Dictionary& record);
    [[nodiscard]] bool canBeFilled(const TemplateView& made) const;
    void closeWebViewPage();

    const Needs needs_;
    TemplateUrl templateUrl_;
};

}  // namespace orbinel
