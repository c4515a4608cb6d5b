#pragma once

#include <webkit/webkit.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "hosts/gtk/deferred_calls.hpp"
#include "hosts/gtk/gobject.hpp"
#include "hosts/gtk/gtk_view.hpp"
#include "hosts/gtk/keyboard_focus.hpp"
#include "orbinel/platform/web_view.hpp"

namespace orbinel::hosts {

/// A page in the web engine, with a session of its own that ends with it. A page opens no windows, dialogs, menus or
/// downloads, and is asked for no permissions: all of them are refused.
///
/// Threads: main thread only.
class GtkWebView final : public platform::WebView {
public:
    GtkWebView(const platform::WebViewSettings& settings, std::weak_ptr<platform::WebViewDelegate> delegate,
               std::shared_ptr<KeyboardFocus> keyboard);
    ~GtkWebView() override;
    GtkWebView(const GtkWebView&) = delete;
    GtkWebView& operator=(const GtkWebView&) = delete;

    [[nodiscard]] std::shared_ptr<platform::View> view() noexcept override { return view_; }
    void load(const std::string& url) noexcept override;
    void evaluateJavaScript(const std::string& script) noexcept override;

private:
    using Signals = SignalConnections<GtkWebView>;

    /// How far the navigation that `load` began has come.
    enum class Stage { idle, asked, committed, finished, failed };

    void connectSignals();
    void refuseWhatNoTemplateMay(bool inspectable);

    // Signals of the engine. The last argument leads to the owner.
    static gboolean decidePolicy(WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
                                 gpointer self) noexcept;
    static GtkWidget* createWindow(WebKitWebView*, WebKitNavigationAction* action, gpointer self) noexcept;
    static void loadChanged(WebKitWebView*, WebKitLoadEvent event, gpointer self) noexcept;
    static gboolean loadFailed(WebKitWebView*, WebKitLoadEvent event, const char* url, GError* error,
                               gpointer self) noexcept;
    static gboolean loadFailedWithTlsErrors(WebKitWebView*, const char* url, GTlsCertificate*, GTlsCertificateFlags,
                                            gpointer self) noexcept;
    static void processTerminated(WebKitWebView*, WebKitWebProcessTerminationReason, gpointer self) noexcept;
    static void progressChanged(WebKitWebView* page, GParamSpec*, gpointer self) noexcept;
    static void messageReceived(WebKitUserContentManager*, JSCValue* message, gpointer self) noexcept;
    static gboolean frameDrawn(GtkWidget*, GdkFrameClock*, gpointer self) noexcept;

    [[nodiscard]] bool allows(WebKitNavigationAction* action);
    [[nodiscard]] bool allows(WebKitResponsePolicyDecision* decision);
    void committed();
    void finished();
    void failed(platform::LoadFailure failure);
    void watchDrawing();

    /// Calls the delegate: now, or at the next turn of the main loop where the web view is inside one of its methods.
    template <typename Call>
    void tell(Call call);

    const std::weak_ptr<platform::WebViewDelegate> delegate_;
    const std::shared_ptr<KeyboardFocus> keyboard_;
    const ObjectPointer<WebKitUserContentManager> content_;
    const ObjectPointer<WebKitNetworkSession> session_;
    const ObjectPointer<WebKitWebView> page_;
    ObjectPointer<WebKitInputMethodContext> inputMethod_;
    const std::shared_ptr<GtkView> view_;

    Stage stage_ = Stage::idle;
    bool firstPageIsDue_ = false;  // for ports that the engine does not like it silently shows an empty page
    bool inMethod_ = false;
    std::pair<int, int> drawnSize_{0, 0};  // points
    guint drawing_ = 0;                    // tick callback
    int framesSeen_ = 0;
    DeferredCalls deferred_;
    Signals signals_{*this};  // the last: cut before anything else goes
};

}  // namespace orbinel::hosts
