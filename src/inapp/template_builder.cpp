#include "inapp/template_builder.hpp"

#include <string>
#include <utility>
#include <variant>

#include "base/guard.hpp"
#include "base/url.hpp"
#include "inapp/inapp_status.hpp"

namespace orbinel {

namespace {

constexpr const char* noWindow = "The application has no window.";
constexpr float firstInspectable = 16.4F;  // version of the platform

}  // namespace

TemplateBuilder::TemplateBuilder(const Needs& needs)
    : needs_(needs), templateUrl_({needs.reports, needs.helper, needs.identity, needs.application}) {}

std::unique_ptr<TemplateView> TemplateBuilder::prepare(const PresentedInapp::Record& record,
                                                       const InappLayout& layout) {
    auto made = std::make_unique<TemplateView>(needs_.views, record, layout);
    made->webView = makeWebView(*record);
    if (made->webView == nullptr) return nullptr;
    auto url = templateUrl_.getTemplateURLFromContent(made->content);
    if (!url) {
        logStatus(needs_.reports, InappStatus::waitingForOther, [&] { return made->identity(); });
        return nullptr;
    }
    made->url = std::move(*url);
    if (!made->namesAPage || isWebUrl(made->url)) return made;
    logStatus(needs_.reports, InappStatus::urlInvalid, [&] {
        auto attributes = made->identity();
        attributes.set("url", made->url);
        return attributes;
    });
    return nullptr;
}

std::shared_ptr<OrbinelWKWebView> TemplateBuilder::makeWebView(const Dictionary& record) {
    std::string reason = noWindow;
    if (needs_.views.overlay() != nullptr) {
        auto webView = std::make_shared<OrbinelWKWebView>(
            OrbinelWKWebView::Needs{needs_.reports, needs_.lifetime, needs_.navigation});
        auto outcome = needs_.views.makeWebView(
            {needs_.helper.isIOSVersionGreaterOrEqual(firstInspectable), needs_.pageSettings.startScript(needs_.json)},
            webView);
        if (auto* made = std::get_if<std::unique_ptr<platform::WebView>>(&outcome)) {
            webView->initWithWebView(std::move(*made));
            return webView;
        }
        reason = std::get<std::string>(outcome);
    }
    logRequestFailed(needs_.reports, record, reason);
    return nullptr;
}

void TemplateBuilder::createInAppWithWebView(TemplateView& made) {
    if (!canBeFilled(made)) return;
    guarded(needs_.reports, {"OrbinelInapp - webviewLayoutCreate", DescriptionForm::nameOnly}, [&] {
        const bool up = made.putUp(needs_.lifetime.whileAlive([this] { closeWebViewPage(); }));
        if (!up) logRequestFailed(needs_.reports, *made.record, noWindow);
    });
    // The views in it are invisible themselves.
    if (!needs_.presented.templatesAreSetToBeHidden()) needs_.views.setOverlayVisible(true, 0);
}

bool TemplateBuilder::canBeFilled(const TemplateView& made) const {
    if (!made.namesAPage) {
        needs_.reports.log(LogType::inapp, LogLevel::error, "Webview can't load.", [] {
            return Dictionary{{"reason", "no image url & no template url"}};
        });
        return false;
    }
    if (!made.isCustomScreen) logRemoval(needs_.reports, "inappPosition is not kCUSTOMSREEN");
    return made.isCustomScreen;
}

/// The message's close button.
void TemplateBuilder::closeWebViewPage() {
    InappButton button;
    button.tag = kCloseButtonDismissControlTag;
    if (auto* clicks = needs_.buttonClicks.get()) clicks->inappButtonClicked(button);
}

}  // namespace orbinel
