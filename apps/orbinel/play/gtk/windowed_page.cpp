#include "apps/orbinel/play/gtk/windowed_page.hpp"

#include <chrono>
#include <string_view>

#include "apps/orbinel/play/gtk/window_picture.hpp"
#include "apps/orbinel/play/not_carried_out.hpp"
#include "hosts/common/rapidjson_json.hpp"
#include "hosts/gtk/gtk_view.hpp"
#include "hosts/gtk/script_value.hpp"
#include "inapp/view_tags.hpp"

namespace orbinel::tool {

namespace {

constexpr std::chrono::seconds longestWait{10};
// The second begins when the first is on its way to the window.
constexpr const char* twoFrames =
    "return new Promise(done => requestAnimationFrame(() => requestAnimationFrame(() => done())));";
constexpr std::string_view bridge = "orbinelurl://";

/// What a script answers with; the engine may come to it when nobody waits any more.
struct Answer {
    bool arrived = false;
    Value value;
    std::string error;
};

void takeAnswer(GObject* page, GAsyncResult* result, gpointer data) noexcept {
    const std::unique_ptr<std::shared_ptr<Answer>> holder(static_cast<std::shared_ptr<Answer>*>(data));
    auto& answer = **holder;
    GError* error = nullptr;
    const hosts::ObjectPointer<JSCValue> value(
        webkit_web_view_call_async_javascript_function_finish(WEBKIT_WEB_VIEW(page), result, &error));
    if (value != nullptr) answer.value = hosts::valueOfScript(value.get());
    if (error != nullptr) answer.error = error->message;
    g_clear_error(&error);
    answer.arrived = true;
}

/// Runs the body of an async function in the page, which may also come back with a promise.
std::shared_ptr<Answer> run(WebKitWebView* page, const std::string& body) {
    auto answer = std::make_shared<Answer>();
    webkit_web_view_call_async_javascript_function(page, body.data(), static_cast<gssize>(body.size()), nullptr,
                                                   nullptr, nullptr, nullptr, &takeAnswer,
                                                   new std::shared_ptr<Answer>(answer));
    return answer;
}

std::string asJson(const Value& value) {
    auto text = hosts::RapidJson().serialise(value, platform::JsonStyle::compact);
    if (!text) throw NotCarriedOut("what the page is to send is no JSON");
    return *std::move(text);
}

std::string navigation(const std::string& url, bool link) {
    const auto target = asJson(url);
    if (link) {
        return "const a = document.createElement('a'); a.href = " + target +
               "; document.body.append(a); a.click(); a.remove();";
    }
    if (!url.starts_with(bridge)) return "location.href = " + target + ";";
    // As pages do it; without the frame, the navigation would be taken back.
    return "const frame = document.createElement('iframe'); frame.hidden = true; frame.src = " + target +
           "; document.body.append(frame); setTimeout(() => frame.remove(), 1000);";
}

bool canBePressed(GtkWidget* widget) {
    if (!GTK_IS_BUTTON(widget) || gtk_widget_get_mapped(widget) == FALSE) return false;
    for (auto* at = widget; at != nullptr; at = gtk_widget_get_parent(at)) {
        if (gtk_widget_get_can_target(at) == FALSE) return false;  // faded out
    }
    return true;
}

}  // namespace

std::shared_ptr<LivePage> WindowedPage::page() const {
    auto page = views_->page();
    if (page == nullptr || page->widget() == nullptr) throw NotCarriedOut("there is no page");
    return page;
}

Value WindowedPage::evaluate(const std::string& expression) {
    const auto answer = run(page()->widget(), "return (" + expression + "\n);");  // a comment at its end may be
    if (!wait_([&] { return answer->arrived; }, longestWait)) throw NotCarriedOut("the page does not answer");
    if (!answer->error.empty()) throw NotCarriedOut("the page says: " + answer->error);
    return answer->value;
}

void WindowedPage::waitUntilDrawn() {
    const auto shown = views_->page();
    if (shown == nullptr || shown->widget() == nullptr) return;
    const auto answer = run(shown->widget(), twoFrames);
    const auto isDrawn = [&] {
        auto* widget = shown->widget();
        return widget == nullptr || (answer->arrived && isSeen(pictureOf(GTK_WIDGET(widget)).get()));
    };
    static_cast<void>(wait_(isDrawn, longestWait));
}

void WindowedPage::finish() {
    const std::weak_ptr<LivePage> loading = page();
    const auto hasEnded = [&] {
        const auto page = loading.lock();
        return page == nullptr || page->load() != LivePage::Load::running;
    };
    if (!wait_(hasEnded, longestWait)) throw NotCarriedOut("the page is not loaded within 10 s");
    const auto page = loading.lock();
    if (page == nullptr) throw NotCarriedOut("the page has gone while it was loaded");
    if (page->load() == LivePage::Load::failed) throw NotCarriedOut("the page cannot be loaded: " + page->failure());
}

void WindowedPage::fail(const platform::LoadFailure&) { throw NotCarriedOut("only a headless page can be let fail"); }

void WindowedPage::progress(double) { throw NotCarriedOut("only a headless page can be told its progress"); }

void WindowedPage::navigate(const std::string& url, bool link) {
    runUntilGrown(navigation(url, link), &LivePage::navigations, "the page does not navigate");
}

void WindowedPage::message(const Value& body) {
    runUntilGrown("webkit.messageHandlers.orbinel.postMessage(" + asJson(body) + ");", &LivePage::messages,
                  "the page's message does not arrive");
}

void WindowedPage::terminate() {
    const std::weak_ptr<LivePage> ending = page();
    webkit_web_view_terminate_web_process(ending.lock()->widget());
    const auto hasEnded = [&] {
        const auto page = ending.lock();
        return page == nullptr || page->load() == LivePage::Load::failed;
    };
    if (!wait_(hasEnded, longestWait)) throw NotCarriedOut("the page's process does not end");
}

void WindowedPage::tapClose() { press(kBUTTONVIEWTAG, "close button"); }

void WindowedPage::tapBrowserClose() { press(kPUSHBROWSERCLOSEBUTTONVIEWTAG, "browser to close"); }

/// Runs a script whose effect the library hears of, and may answer by ending the page.
void WindowedPage::runUntilGrown(const std::string& script, Counter counter, const char* otherwise) {
    const std::weak_ptr<LivePage> acting = page();
    const int before = (*acting.lock().*counter)();
    const auto answer = run(acting.lock()->widget(), script);
    const auto hasGrown = [&] {
        const auto page = acting.lock();
        return page == nullptr || (*page.*counter)() != before || !answer->error.empty();
    };
    if (!wait_(hasGrown, longestWait)) throw NotCarriedOut(otherwise);
    const auto page = acting.lock();
    if (page != nullptr && (*page.*counter)() == before) throw NotCarriedOut("the page says: " + answer->error);
}

void WindowedPage::press(std::int32_t tag, const char* what) {
    const auto overlay = views_->overlay();
    const auto view = overlay != nullptr ? overlay->findTag(tag) : nullptr;
    auto* button = view != nullptr ? gtk_widget_get_first_child(static_cast<hosts::GtkView&>(*view).widget()) : nullptr;
    if (button == nullptr || !canBePressed(button)) throw NotCarriedOut(std::string("there is no ") + what);
    g_signal_emit_by_name(button, "clicked");
}

}  // namespace orbinel::tool
