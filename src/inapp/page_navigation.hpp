#pragma once

#include <functional>
#include <string>

#include "base/late.hpp"
#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "inapp/collaborators.hpp"
#include "inapp/presented_inapp.hpp"
#include "inapp/template_view.hpp"
#include "inapp/template_web_view.hpp"
#include "orbinel/platform/console.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "tools/test_devices.hpp"

namespace orbinel {

/// The page of the one message: loads it, lets in nothing but what is its own, and hands on what it says and where its
/// links lead.
///
/// Threads: main.
class PageNavigation final : public TemplateNavigation {
public:
    struct Needs {
        Reports& reports;
        const TestDevices& testDevices;
        PresentedInapp& presented;
        const Lifetime& lifetime;
        platform::Scheduler& scheduler;
        platform::Console& console;
        Late<TemplatePage>& page;
        Late<InappButtonClicks>& buttonClicks;
        Late<UrlOpening>& urlOpening;
    };

    explicit PageNavigation(const Needs& needs) : needs_(needs) {}

    std::function<void()> finished;      // the page of a message that is loading is there
    std::function<void()> processEnded;  // nothing runs in the page any more, shown or not
    std::function<void()> givenUp;       // it will not come, or has gone before it was shown; why has been told

    /// Loads the page of the message, which stands until `end`. What takes longer than a minute is given up.
    void load(TemplateView& message);
    void end() noexcept;

    platform::NavigationPolicy decidePolicyForNavigationAction(const platform::NavigationAction& action) override;
    platform::NavigationPolicy decidePolicyForNavigationResponse(const platform::NavigationResponse& response) override;
    void didFinishNavigation() override;
    void didFailNavigation(const platform::LoadFailure& failure) override;
    void webContentProcessDidTerminate() override;
    void didReceiveScriptMessage(const Value& body) override;

private:
    [[nodiscard]] bool isLoading() const noexcept;
    void openLink(const std::string& url);
    [[nodiscard]] platform::NavigationPolicy refuseFrame(const std::string& url);
    void logFailure(const platform::LoadFailure& failure);
    void giveUp(const std::string& reason);

    const Needs needs_;
    TemplateView* message_ = nullptr;
    std::string origin_;  // of the page that may speak
    bool loaded_ = false;
    platform::Ticket loadLimit_;
};

}  // namespace orbinel
