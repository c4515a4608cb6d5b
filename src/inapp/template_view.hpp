#pragma once

#include <functional>
#include <memory>
#include <string>

#include "inapp/campaign_choice.hpp"
#include "inapp/inapp_layout.hpp"
#include "inapp/presentation_observer.hpp"
#include "inapp/presented_inapp.hpp"
#include "inapp/template_layout.hpp"
#include "inapp/template_web_view.hpp"
#include "orbinel/platform/views.hpp"

namespace orbinel {

/// One message in the application's window, from being built until it is gone: a container with the page and the close
/// button, and where the message asks for it a view behind that dims the application.
///
/// Threads: main.
class TemplateView {
public:
    enum class Stage {
        loading,
        delayed,  // the page is there, its moment is not
        shown,
        givenUp,  // stays as it is, but makes way for the next one
        leaving   // fades
    };

    TemplateView(platform::Views& views, PresentedInapp::Record given, const InappLayout& asked);
    ~TemplateView();
    TemplateView(const TemplateView&) = delete;
    TemplateView& operator=(const TemplateView&) = delete;

    /// Puts everything into the window, invisible. `close` runs when the person presses the close button. False, and
    /// nothing done, where the window has gone meanwhile.
    [[nodiscard]] bool putUp(std::function<void()> close);
    [[nodiscard]] bool isUp() const noexcept { return container_ != nullptr; }
    [[nodiscard]] const std::shared_ptr<platform::View>& container() const noexcept { return container_; }

    void fadeIn();
    /// The completion runs on the main queue, once nothing is to be seen.
    void fadeOut(std::function<void()> completion);
    void adjust(const Dictionary& templateLayout, platform::View& window);
    /// Takes everything out of the window. The page goes with this object.
    void takeDown();

    [[nodiscard]] Dictionary identity() const { return inappIdentity(record.get()); }
    [[nodiscard]] PresentedView presented() const;

    const PresentedInapp::Record record;
    const Dictionary content;
    const InappLayout layout;
    const bool namesAPage;
    const bool isCustomScreen;
    std::string url;
    std::shared_ptr<OrbinelWKWebView> webView;
    Stage stage = Stage::loading;

private:
    void createCustomBase(platform::View& window);
    void addCloseButton(const std::shared_ptr<platform::View>& button);

    platform::Views& views_;
    TemplateLayout place_;
    std::shared_ptr<platform::View> container_;
    std::shared_ptr<platform::View> overlay_;  // what dims the application; mostly nothing
};

}  // namespace orbinel
