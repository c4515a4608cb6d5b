#include "hosts/gtk/gtk_web_view.hpp"

#include <string_view>

#include "hosts/gtk/page_input_method.hpp"
#include "hosts/gtk/script_value.hpp"

namespace orbinel::hosts {

namespace {

using platform::LoadFailure;
using platform::NavigationPolicy;

constexpr const char* messageHandler = "orbinel";
constexpr std::int32_t badUrl = -1000;  // of the domain of loading a URL

struct GUriUnref {
    void operator()(GUri* uri) const noexcept { g_uri_unref(uri); }
};

bool isWebUrl(const std::string& url) {
    const std::unique_ptr<GUri, GUriUnref> uri(g_uri_parse(url.c_str(), G_URI_FLAGS_PARSE_RELAXED, nullptr));
    if (uri == nullptr) return false;
    const std::string_view scheme = g_uri_get_scheme(uri.get());  // in lower case
    const char* host = g_uri_get_host(uri.get());
    return (scheme == "http" || scheme == "https") && host != nullptr && *host != '\0';
}

/// The process family of the library's pages, apart from the application's own.
WebKitWebContext* webContext() {
    static WebKitWebContext* const context = webkit_web_context_new();
    return context;
}

ObjectPointer<WebKitUserContentManager> contentOf(const platform::WebViewSettings& settings) {
    ObjectPointer<WebKitUserContentManager> content(webkit_user_content_manager_new());
    webkit_user_content_manager_register_script_message_handler(content.get(), messageHandler, nullptr);
    if (settings.startScript.empty()) return content;
    auto* script = webkit_user_script_new(settings.startScript.c_str(), WEBKIT_USER_CONTENT_INJECT_TOP_FRAME,
                                          WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, nullptr, nullptr);
    webkit_user_content_manager_add_script(content.get(), script);
    webkit_user_script_unref(script);
    return content;
}

ObjectPointer<WebKitWebView> pageOf(const platform::WebViewSettings& settings, WebKitUserContentManager* content,
                                    WebKitNetworkSession* session) {
    const ObjectPointer<WebKitSettings> engineSettings(
        webkit_settings_new_with_settings("enable-developer-extras", static_cast<gboolean>(settings.inspectable),
                                          "enable-fullscreen", FALSE, "enable-back-forward-navigation-gestures", FALSE,
                                          "allow-modal-dialogs", FALSE, "enable-page-cache", FALSE, nullptr));
    auto page = retain(
        WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", webContext(), "network-session", session,
                                     "user-content-manager", content, "settings", engineSettings.get(), nullptr)));
    constexpr GdkRGBA clear{0, 0, 0, 0};
    webkit_web_view_set_background_color(page.get(), &clear);
    return page;
}

/// What ends a load because another took its place, or because the delegate wanted it so, is no failure.
bool isNoFailure(const GError* error) {
    return g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) ||
           g_error_matches(error, WEBKIT_POLICY_ERROR, WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE);
}

LoadFailure failureOf(const GError* error, bool provisional) {
    if (error->domain == G_TLS_ERROR) {
        return {std::string(LoadFailure::urlLoading), LoadFailure::secureConnectionFailed, error->message, provisional};
    }
    const bool ofEngine = error->domain == WEBKIT_POLICY_ERROR || error->domain == WEBKIT_MEDIA_ERROR;
    return {ofEngine ? g_quark_to_string(error->domain) : std::string(LoadFailure::urlLoading), error->code,
            error->message, provisional};
}

void cancelDownload(WebKitNetworkSession* /*session*/, WebKitDownload* download, gpointer /*data*/) noexcept {
    webkit_download_cancel(download);
}

gboolean dropWish(WebKitWebView* /*page*/, gpointer /*wish*/, gpointer /*data*/) noexcept { return TRUE; }

gboolean dropMenu(WebKitWebView* /*page*/, WebKitContextMenu* /*menu*/, WebKitHitTestResult* /*hit*/,
                  gpointer /*data*/) noexcept {
    return TRUE;
}

gboolean denyPermission(WebKitWebView* /*page*/, WebKitPermissionRequest* request, gpointer /*data*/) noexcept {
    webkit_permission_request_deny(request);
    return TRUE;
}

gboolean cancelAuthentication(WebKitWebView* /*page*/, WebKitAuthenticationRequest* request,
                              gpointer /*data*/) noexcept {
    webkit_authentication_request_cancel(request);
    return TRUE;
}

gboolean cancelFileChoice(WebKitWebView* /*page*/, WebKitFileChooserRequest* request, gpointer /*data*/) noexcept {
    webkit_file_chooser_request_cancel(request);
    return TRUE;
}

}  // namespace

template <typename Call>
void GtkWebView::tell(Call call) {
    if (inMethod_ || !deferred_.empty()) {
        deferred_.add([weak = delegate_, call] {
            if (const auto delegate = weak.lock()) call(*delegate);
        });
    } else if (const auto delegate = delegate_.lock()) {
        call(*delegate);
    }
}

GtkWebView::GtkWebView(const platform::WebViewSettings& settings, std::weak_ptr<platform::WebViewDelegate> delegate,
                       std::shared_ptr<KeyboardFocus> keyboard)
    : delegate_(std::move(delegate)),
      keyboard_(std::move(keyboard)),
      content_(contentOf(settings)),
      session_(webkit_network_session_new_ephemeral()),
      page_(pageOf(settings, content_.get(), session_.get())),
      view_(std::make_shared<GtkView>(platform::Backdrop::clear)) {
    inputMethod_.reset(newPageInputMethod(GTK_WIDGET(page_.get()), [this](bool focused) {
        focused ? keyboard_->pageGotFocus(this) : keyboard_->pageLostFocus(this);
    }));
    webkit_web_view_set_input_method_context(page_.get(), inputMethod_.get());
    view_->setContent(GTK_WIDGET(page_.get()), [this](int, int) {
        if (stage_ == Stage::finished) watchDrawing();
    });
    connectSignals();
    refuseWhatNoTemplateMay(settings.inspectable);
}

GtkWebView::~GtkWebView() {
    detach(inputMethod_.get());
    keyboard_->pageLostFocus(this);
    if (drawing_ != 0) gtk_widget_remove_tick_callback(GTK_WIDGET(page_.get()), drawing_);
    webkit_user_content_manager_unregister_script_message_handler(content_.get(), messageHandler, nullptr);
    view_->setContent(nullptr);
}

void GtkWebView::connectSignals() {
    signals_.connect(page_.get(), "decide-policy", G_CALLBACK(&GtkWebView::decidePolicy));
    signals_.connect(page_.get(), "create", G_CALLBACK(&GtkWebView::createWindow));
    signals_.connect(page_.get(), "load-changed", G_CALLBACK(&GtkWebView::loadChanged));
    signals_.connect(page_.get(), "load-failed", G_CALLBACK(&GtkWebView::loadFailed));
    signals_.connect(page_.get(), "load-failed-with-tls-errors", G_CALLBACK(&GtkWebView::loadFailedWithTlsErrors));
    signals_.connect(page_.get(), "web-process-terminated", G_CALLBACK(&GtkWebView::processTerminated));
    signals_.connect(page_.get(), "notify::estimated-load-progress", G_CALLBACK(&GtkWebView::progressChanged));
    signals_.connect(content_.get(), "script-message-received::orbinel", G_CALLBACK(&GtkWebView::messageReceived));
}

void GtkWebView::refuseWhatNoTemplateMay(bool inspectable) {
    for (const auto* wish : {"script-dialog", "print", "show-notification"}) {
        g_signal_connect(page_.get(), wish, G_CALLBACK(&dropWish), nullptr);
    }
    if (!inspectable) g_signal_connect(page_.get(), "context-menu", G_CALLBACK(&dropMenu), nullptr);
    g_signal_connect(page_.get(), "permission-request", G_CALLBACK(&denyPermission), nullptr);
    g_signal_connect(page_.get(), "authenticate", G_CALLBACK(&cancelAuthentication), nullptr);
    g_signal_connect(page_.get(), "run-file-chooser", G_CALLBACK(&cancelFileChoice), nullptr);
    g_signal_connect(session_.get(), "download-started", G_CALLBACK(&cancelDownload), nullptr);
}

void GtkWebView::load(const std::string& url) noexcept {
    inMethod_ = true;
    if (isWebUrl(url)) {
        stage_ = Stage::asked;
        firstPageIsDue_ = true;
        webkit_web_view_load_uri(page_.get(), url.c_str());
    } else {
        failed({std::string(LoadFailure::urlLoading), badUrl, "This is no absolute http or https URL.", true});
    }
    inMethod_ = false;
}

void GtkWebView::evaluateJavaScript(const std::string& script) noexcept {
    inMethod_ = true;
    webkit_web_view_evaluate_javascript(page_.get(), script.data(), static_cast<gssize>(script.size()), nullptr,
                                        nullptr, nullptr, nullptr, nullptr);
    inMethod_ = false;
}

gboolean GtkWebView::decidePolicy(WebKitWebView* /*page*/, WebKitPolicyDecision* decision,
                                  WebKitPolicyDecisionType type, gpointer self) noexcept {
    auto& own = Signals::ownerOf(self);
    bool allowed = false;
    if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) {
        allowed = own.allows(WEBKIT_RESPONSE_POLICY_DECISION(decision));
    } else {
        allowed = own.allows(
            webkit_navigation_policy_decision_get_navigation_action(WEBKIT_NAVIGATION_POLICY_DECISION(decision)));
    }
    // The delegate may have ended the web view by now. No page opens a window.
    if (allowed && type != WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION) {
        webkit_policy_decision_use(decision);
    } else {
        webkit_policy_decision_ignore(decision);
    }
    return TRUE;
}

GtkWidget* GtkWebView::createWindow(WebKitWebView* /*page*/, WebKitNavigationAction* action, gpointer self) noexcept {
    static_cast<void>(Signals::ownerOf(self).allows(action));
    return nullptr;
}

bool GtkWebView::allows(WebKitNavigationAction* action) {
    const auto delegate = delegate_.lock();
    if (delegate == nullptr) return false;
    const char* url = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
    const bool link = webkit_navigation_action_get_navigation_type(action) == WEBKIT_NAVIGATION_TYPE_LINK_CLICKED;
    const bool redirected = webkit_navigation_action_is_redirect(action) != FALSE;
    return delegate->decidePolicyForNavigationAction({url != nullptr ? url : "", link, redirected}) ==
           NavigationPolicy::allow;
}

bool GtkWebView::allows(WebKitResponsePolicyDecision* decision) {
    const auto delegate = delegate_.lock();
    if (delegate == nullptr) return false;
    auto* answer = webkit_response_policy_decision_get_response(decision);
    platform::NavigationResponse response;
    if (const char* url = webkit_uri_response_get_uri(answer)) response.url = url;
    if (const auto status = webkit_uri_response_get_status_code(answer); status != 0) {
        response.status = static_cast<std::int32_t>(status);
    }
    response.mainFrame = webkit_response_policy_decision_is_main_frame_main_resource(decision) != FALSE;
    return delegate->decidePolicyForNavigationResponse(response) == NavigationPolicy::allow;
}

void GtkWebView::loadChanged(WebKitWebView* /*page*/, WebKitLoadEvent event, gpointer self) noexcept {
    auto& own = Signals::ownerOf(self);
    if (event == WEBKIT_LOAD_STARTED) own.stage_ = Stage::asked;
    if (event == WEBKIT_LOAD_COMMITTED) own.committed();
    if (event == WEBKIT_LOAD_FINISHED) own.finished();
}

void GtkWebView::committed() {
    if (stage_ != Stage::asked) return;
    stage_ = Stage::committed;
    const char* url = webkit_web_view_get_uri(page_.get());
    if (std::exchange(firstPageIsDue_, false) && !isWebUrl(url != nullptr ? url : "")) {
        failed({std::string(LoadFailure::urlLoading), badUrl, "The web engine does not load pages from there.", true});
    }
}

void GtkWebView::finished() {
    if (stage_ != Stage::committed) return;  // a load that failed, or was refused, also ends
    stage_ = Stage::finished;
    drawnSize_ = {0, 0};
    watchDrawing();
    tell([](platform::WebViewDelegate& delegate) { delegate.didFinishNavigation(); });
}

gboolean GtkWebView::loadFailed(WebKitWebView* /*page*/, WebKitLoadEvent event, const char* /*url*/, GError* error,
                                gpointer self) noexcept {
    if (!isNoFailure(error)) {
        const bool provisional = event == WEBKIT_LOAD_STARTED || event == WEBKIT_LOAD_REDIRECTED;
        Signals::ownerOf(self).failed(failureOf(error, provisional));
    }
    return TRUE;  // else the engine's own error page would take the place of the next load
}

gboolean GtkWebView::loadFailedWithTlsErrors(WebKitWebView* /*page*/, const char* /*url*/,
                                             GTlsCertificate* /*certificate*/, GTlsCertificateFlags /*errors*/,
                                             gpointer self) noexcept {
    Signals::ownerOf(self).failed({std::string(LoadFailure::urlLoading), LoadFailure::secureConnectionFailed,
                                   "The server's certificate is not trusted.", true});
    return TRUE;
}

void GtkWebView::failed(LoadFailure failure) {
    stage_ = Stage::failed;
    tell([failure = std::move(failure)](platform::WebViewDelegate& delegate) { delegate.didFailNavigation(failure); });
}

void GtkWebView::processTerminated(WebKitWebView* /*page*/, WebKitWebProcessTerminationReason /*reason*/,
                                   gpointer self) noexcept {
    auto& own = Signals::ownerOf(self);
    own.stage_ = Stage::failed;
    own.keyboard_->pageLostFocus(&own);
    own.tell([](platform::WebViewDelegate& delegate) { delegate.contentProcessDidTerminate(); });
}

void GtkWebView::progressChanged(WebKitWebView* page, GParamSpec* /*property*/, gpointer self) noexcept {
    Signals::ownerOf(self).tell(
        [progress = webkit_web_view_get_estimated_load_progress(page)](platform::WebViewDelegate& delegate) {
            delegate.estimatedProgressChanged(progress);
        });
}

void GtkWebView::messageReceived(WebKitUserContentManager* /*content*/, JSCValue* message, gpointer self) noexcept {
    Signals::ownerOf(self).tell([body = valueOfScript(message)](platform::WebViewDelegate& delegate) {
        delegate.didReceiveScriptMessage(body);
    });
}

void GtkWebView::watchDrawing() {
    framesSeen_ = 0;
    if (drawing_ != 0) return;
    drawing_ = gtk_widget_add_tick_callback(GTK_WIDGET(page_.get()), &GtkWebView::frameDrawn, this, nullptr);
}

gboolean GtkWebView::frameDrawn(GtkWidget* page, GdkFrameClock* /*clock*/, gpointer self) noexcept {
    auto& own = *static_cast<GtkWebView*>(self);
    const std::pair size{gtk_widget_get_width(page), gtk_widget_get_height(page)};
    // A tick comes before the drawing of its frame, so that the second one tells that a frame is done.
    if (++own.framesSeen_ < 2 || size.first <= 0 || size.second <= 0) return G_SOURCE_CONTINUE;
    own.drawing_ = 0;
    if (std::exchange(own.drawnSize_, size) != size) {
        own.tell([size](platform::WebViewDelegate& delegate) { delegate.wasDrawn(size.first, size.second); });
    }
    return G_SOURCE_REMOVE;
}

}  // namespace orbinel::hosts
