#include <webkit/webkit.h>

#include "hosts/common/in_process_notification_centre.hpp"
#include "hosts/common/rapidjson_json.hpp"
#include "hosts/gtk/gtk_views.hpp"
#include "hosts/gtk/windowed_application.hpp"
#include "hosts/linux/linux_application.hpp"
#include "hosts/linux/linux_notifications.hpp"
#include "tests/gtk/page_server.hpp"
#include "tests/gtk/window_under_test.hpp"
#include "tests/port_contract/delegates_contract.hpp"
#include "tests/port_contract/views_contract.hpp"

// What the GTK host makes of its own keeps the contracts of the services.
namespace orbinel::contract {

namespace {

/// The last widget of this kind below the widget.
template <typename IsWanted>
GtkWidget* findLast(GtkWidget* widget, IsWanted isWanted) {
    for (auto* child = gtk_widget_get_last_child(widget); child != nullptr;
         child = gtk_widget_get_prev_sibling(child)) {
        if (auto* found = findLast(child, isWanted)) return found;
    }
    return isWanted(widget) ? widget : nullptr;
}

class RealPages final : public PageDriver {
public:
    explicit RealPages(const hosts::WindowUnderTest& window) : window_(window) {
        server_.set("/answer", "<p>here</p>");
        server_.set("/missing", "<p>not here</p>", 404);
    }

    std::string urlOf(Page page) override {
        if (page == Page::unreachable) return hosts::PageServer::deadUrl();
        return server_.url(page == Page::answer ? "/answer" : "/missing");
    }
    void arrive(Page) override {}
    void navigate(const std::string& url, bool linkActivated) override {
        run(linkActivated ? "const a = document.createElement('a'); a.href = '" + url +
                                "'; document.body.appendChild(a); a.click();"
                          : "location.href = '" + url + "'");
    }
    void post(const Value& message) override {
        auto json = *hosts::RapidJson().serialise(message, platform::JsonStyle::compact);
        run("webkit.messageHandlers.orbinel.postMessage(" + json + ")");
    }
    bool runsScripts() const override { return true; }
    void pressCloseButton() override {
        auto* button = findLast(GTK_WIDGET(window_.get()),
                                [](GtkWidget* widget) { return gtk_widget_has_css_class(widget, "orbinel-close"); });
        ASSERT_NE(button, nullptr);
        g_signal_emit_by_name(button, "clicked");
    }

private:
    void run(const std::string& script) {
        auto* page = findLast(GTK_WIDGET(window_.get()), [](GtkWidget* widget) { return WEBKIT_IS_WEB_VIEW(widget); });
        ASSERT_NE(page, nullptr);
        webkit_web_view_evaluate_javascript(WEBKIT_WEB_VIEW(page), script.c_str(), -1, nullptr, nullptr, nullptr,
                                            nullptr, nullptr);
    }

    const hosts::WindowUnderTest& window_;
    hosts::PageServer server_;
};

ViewsUnderTest gtkViews() {
    const auto window = std::make_shared<hosts::WindowUnderTest>(400, 600);
    const auto views = std::make_shared<hosts::GtkViews>(window->get());
    EXPECT_TRUE(window->present());
    const std::shared_ptr<PageDriver> pages(new RealPages(*window), [window](PageDriver* driver) { delete driver; });
    return {views, pages, {0, 0, 400, 600}, 0, 0, &hosts::turnFor};
}

DelegatesUnderTest gtkDelegates() {
    const auto window = std::make_shared<hosts::WindowUnderTest>(400, 600);
    const auto package = std::make_shared<hosts::LinuxApplication>(platform::ApplicationBundle(), false, nullptr);
    const auto centre = std::make_shared<hosts::InProcessNotificationCentre>();
    const std::shared_ptr<platform::Application> application(
        new hosts::WindowedApplication(window->get(), package, centre), [window](auto* raw) { delete raw; });
    return {application, std::make_shared<hosts::LinuxNotifications>()};
}

INSTANTIATE_TEST_SUITE_P(Gtk, ViewsContract, testing::Values(&gtkViews));
INSTANTIATE_TEST_SUITE_P(Gtk, DelegatesContract, testing::Values(&gtkDelegates));

}  // namespace

}  // namespace orbinel::contract
