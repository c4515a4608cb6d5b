#include "hosts/gtk/gtk_web_view.hpp"

#include <gio/gio.h>
#include <gmock/gmock.h>

#include "hosts/gtk/gtk_views.hpp"
#include "tests/gtk/page_server.hpp"
#include "tests/gtk/window_under_test.hpp"

namespace orbinel::hosts {
namespace {

using platform::NavigationPolicy;

struct Heard final : platform::WebViewDelegate {
    NavigationPolicy decidePolicyForNavigationAction(const platform::NavigationAction& action) noexcept override {
        actions.push_back(action);
        return action.url.starts_with("http") ? NavigationPolicy::allow : NavigationPolicy::cancel;
    }
    NavigationPolicy decidePolicyForNavigationResponse(const platform::NavigationResponse& response) noexcept override {
        responses.push_back(response);
        return response.url.ends_with("/refused") ? NavigationPolicy::cancel : NavigationPolicy::allow;
    }
    void didFinishNavigation() noexcept override {
        ++finished;
        if (onFinish) onFinish();
    }
    void didFailNavigation(const platform::LoadFailure& failure) noexcept override { failures.push_back(failure); }
    void contentProcessDidTerminate() noexcept override { ++terminated; }
    void estimatedProgressChanged(double) noexcept override {}
    void didReceiveScriptMessage(const Value& body) noexcept override { messages.push_back(body); }
    void wasDrawn(double width, double height) noexcept override { drawn.emplace_back(width, height); }

    /// How often the page went to this URL; with `link`, by a link.
    [[nodiscard]] long visits(const std::string& url, bool link = false) const {
        return std::count_if(actions.begin(), actions.end(),
                             [&](const auto& action) { return action.url == url && action.linkActivated == link; });
    }

    std::function<void()> onFinish;
    std::vector<platform::NavigationAction> actions;
    std::vector<platform::NavigationResponse> responses;
    std::vector<platform::LoadFailure> failures;
    std::vector<Value> messages;
    std::vector<std::pair<double, double>> drawn;
    int finished = 0;
    int terminated = 0;
};

struct Pages : testing::Test {
    void SetUp() override {
        ASSERT_TRUE(window.present());
        auto made = views->makeWebView({}, heard);
        ASSERT_TRUE(std::holds_alternative<std::unique_ptr<platform::WebView>>(made)) << std::get<std::string>(made);
        web = std::move(std::get<std::unique_ptr<platform::WebView>>(made));
        views->overlay()->addChild(web->view());
    }
    void TearDown() override {
        if (web != nullptr) web->view()->removeFromParent();
    }

    void show(const std::string& html) {
        server.set("/page", html);
        web->load(server.url("/page"));
        const int before = heard->finished;
        ASSERT_TRUE(turnUntil([&] { return heard->finished > before && !heard->drawn.empty(); }));
    }

    /// What an expression is inside the page.
    Value evaluate(const std::string& expression) {
        heard->messages.clear();
        web->evaluateJavaScript("webkit.messageHandlers.orbinel.postMessage(" + expression + ")");
        const bool told = turnUntil([&] { return !heard->messages.empty(); });
        EXPECT_TRUE(told) << expression;
        return told ? heard->messages.front() : Value();
    }

    WindowUnderTest window{400, 600};
    PageServer server;
    std::shared_ptr<GtkViews> views = std::make_shared<GtkViews>(window.get());
    std::shared_ptr<Heard> heard = std::make_shared<Heard>();
    std::unique_ptr<platform::WebView> web;
};

// The way in which templates speak: whatever they use for it, what they say arrives byte for byte.
TEST_F(Pages, TheOwnSchemeArrivesByteForByteHoweverThePageGoesThere) {
    show("<a id=link href='http://127.0.0.1/'>link</a>");
    web->evaluateJavaScript(
        "window.said = 'orbinelurl://' + encodeURIComponent(JSON.stringify("
        "    {text: '\\u00e9\"<&%\\u2028', long: 'x'.repeat(1 << 20)}));"
        "link.href = said; link.removeAttribute('target');");
    const auto said = *evaluate("said").ifString();
    ASSERT_GT(said.size(), std::size_t{1} << 20);

    web->evaluateJavaScript("location.href = said");
    EXPECT_TRUE(turnUntil([&] { return heard->visits(said) == 1; })) << "location.href";
    web->evaluateJavaScript("const f = document.createElement('iframe'); f.src = said; document.body.append(f)");
    EXPECT_TRUE(turnUntil([&] { return heard->visits(said) == 2; })) << "iframe";
    web->evaluateJavaScript("link.click()");
    EXPECT_TRUE(turnUntil([&] { return heard->visits(said, true) == 1; })) << "anchor";
    web->evaluateJavaScript("link.target = '_blank'; link.click()");
    EXPECT_TRUE(turnUntil([&] { return heard->visits(said, true) == 2; })) << "anchor of a new window";
    web->evaluateJavaScript("window.open(said)");
    EXPECT_TRUE(turnUntil([&] { return heard->visits(said) == 3; })) << "window.open";
    turnFor(std::chrono::milliseconds{100});
    EXPECT_EQ(heard->actions.size(), 6u);
    EXPECT_EQ(heard->finished, 1);
    EXPECT_THAT(heard->failures, testing::IsEmpty());
    EXPECT_EQ(evaluate("document.body !== null"), Value(true));  // the page is still there
}

TEST_F(Pages, AnswersTellTheirStatusAndFrameAndRefusedOnesAreNotShown) {
    server.set("/inner", "inner");
    server.set("/refused", "refused");
    show("<iframe src='/inner'></iframe><iframe src='/refused'></iframe><iframe src='/nowhere'></iframe>");
    ASSERT_EQ(heard->responses.size(), 4u);
    EXPECT_TRUE(heard->responses[0].mainFrame);
    for (std::size_t i = 1; i < 4; ++i) {
        EXPECT_FALSE(heard->responses[i].mainFrame);
        EXPECT_EQ(heard->responses[i].status, heard->responses[i].url.ends_with("/nowhere") ? 404 : 200);
    }
    EXPECT_EQ(evaluate("frames[0].document.body.textContent"), Value("inner"));
    EXPECT_NE(evaluate("String(frames[1].document && frames[1].document.body.textContent)"), Value("refused"));
}

// The library refuses such frames by their URLs, so it has to be asked about them.
TEST_F(Pages, FramesThatNeedNoServerAreAskedForToo) {
    show("<p>page</p>");
    web->evaluateJavaScript(
        "const speak = '<script>webkit.messageHandlers.orbinel.postMessage(\"frame\")</scr' + 'ipt>';"
        "for (const url of ['data:text/html,' + speak, URL.createObjectURL(new Blob([speak], {type: 'text/html'}))]) {"
        "    const frame = document.createElement('iframe'); frame.src = url; document.body.append(frame);"
        "}");
    EXPECT_TRUE(turnUntil([&] { return heard->actions.size() >= 3; }));
    turnFor(std::chrono::milliseconds{200});
    for (const auto* scheme : {"data:", "blob:"}) {
        EXPECT_TRUE(std::any_of(heard->actions.begin(), heard->actions.end(), [&](const auto& action) {
            return action.url.starts_with(scheme);
        })) << scheme;
    }
    EXPECT_THAT(heard->messages, testing::IsEmpty());
}

// Otherwise a frame of any origin could speak in the page's name.
TEST_F(Pages, ARedirectToTheOwnSchemeIsToldAsOne) {
    const std::string said = "orbinelurl://%7B%22dismiss%22%3A1%7D";
    PageServer other;
    other.redirect("/redirect", said);
    show("<iframe src='" + other.url("/redirect") + "'></iframe><iframe src='" + said + "'></iframe>");
    ASSERT_TRUE(turnUntil([&] { return heard->visits(said) == 2; }));
    for (const auto& action : heard->actions) {
        EXPECT_TRUE(action.url == said || !action.redirected) << action.url;
    }
    EXPECT_EQ(
        std::count_if(heard->actions.begin(), heard->actions.end(), [](const auto& one) { return one.redirected; }), 1);
}

TEST_F(Pages, AFailedLoadIsToldOnceAndLeavesTheNextLoadInPeace) {
    const PageServer untrusted(PageServer::Transport::tls);
    // The engine refuses the second one by itself, without a word.
    for (const auto& url : {PageServer::deadUrl(), std::string("http://127.0.0.1:1/"), untrusted.url("/")}) {
        heard->failures.clear();
        web->load(url);
        ASSERT_TRUE(turnUntil([&] { return !heard->failures.empty(); })) << url;
        turnFor(std::chrono::milliseconds{100});
        ASSERT_EQ(heard->failures.size(), 1u) << url;
        EXPECT_EQ(heard->failures[0].domain, platform::LoadFailure::urlLoading) << url;
        EXPECT_TRUE(heard->failures[0].provisional) << url;
        const auto code = heard->failures[0].code;
        const bool isTls = url.starts_with("https");
        // The refused connection may be gone before the engine says why.
        if (isTls && code == G_IO_ERROR_CANCELLED) continue;
        EXPECT_EQ(code == platform::LoadFailure::secureConnectionFailed, isTls) << heard->failures[0].description;
    }
    EXPECT_EQ(heard->finished, 0);
    show("<p id=there>there</p>");
    EXPECT_EQ(evaluate("there.textContent"), Value("there"));
}

TEST_F(Pages, MessagesKeepTheirKindsAndAnEndlessOneIsNoValue) {
    show("");
    EXPECT_EQ(evaluate("{n: 3, half: 0.5, no: false, none: null, gone: undefined, list: ['\\u00e9\\u0000', [], NaN]}"),
              Value(Dictionary{{"n", std::int64_t{3}},
                               {"half", 0.5},
                               {"no", false},
                               {"none", Null{}},
                               {"list", Array{std::string("\xc3\xa9\0", 3), Array{}, Null{}}}}));
    EXPECT_TRUE(evaluate("'x'.repeat(1 << 23)").isAbsent());
    EXPECT_TRUE(evaluate("(() => { let a = []; for (let i = 0; i < 40; ++i) a = [a, a]; return a; })()").isAbsent());
    EXPECT_TRUE(evaluate("(() => { const a = []; a.push(a); return a; })()").isAbsent());
    EXPECT_TRUE(evaluate("(() => { const a = []; a.length = 1e6; return a; })()").isAbsent());
}

TEST_F(Pages, WhatATemplateHasNoBusinessWithIsRefused) {
    show("<p>page</p>");
    EXPECT_EQ(evaluate("(alert('x'), String(confirm('x')) + prompt('x'))"), Value("falsenull"));
    EXPECT_EQ(evaluate("String(window.open('" + server.url("/page") + "'))"), Value("null"));
}

// A test kills the process that draws, as the system does when memory is short.
TEST_F(Pages, AnEndedProcessIsToldAndTheNextLoadBringsAnother) {
    show("");
    auto* page = gtk_widget_get_first_child(static_cast<GtkView&>(*web->view()).widget());
    webkit_web_view_terminate_web_process(WEBKIT_WEB_VIEW(page));
    ASSERT_TRUE(turnUntil([&] { return heard->terminated == 1; }));
    const int before = heard->finished;
    web->load(server.url("/page"));
    EXPECT_TRUE(turnUntil([&] { return heard->finished == before + 1; }));
    EXPECT_EQ(heard->terminated, 1);
}

TEST_F(Pages, ATextFieldOfAPageHasTheKeyboardWhileItIsFocused) {
    show("<body style='margin:0'><input id=field style='display:block;width:100%;height:50px'><p>below</p>");
    gtk_window_set_focus(window.get(), nullptr);
    EXPECT_FALSE(views->isKeyboardOpen());
    window.click(100, 25);
    ASSERT_TRUE(turnUntil([&] { return views->isKeyboardOpen(); }));
    window.type("acme");
    EXPECT_TRUE(turnUntil([&] { return evaluate("field.value") == Value("acme"); }));
    window.click(100, 400);
    EXPECT_TRUE(turnUntil([&] { return !views->isKeyboardOpen(); }));
    window.click(100, 25);
    ASSERT_TRUE(turnUntil([&] { return views->isKeyboardOpen(); }));
    web->view()->removeFromParent();
    web.reset();
    EXPECT_FALSE(views->isKeyboardOpen());
}

TEST_F(Pages, APageIsSeenAndTheApplicationWhereThePageIsClear) {
    turnFor(std::chrono::milliseconds{50});
    const auto application = window.colourAt(200, 500);
    web->view()->setConstraints(
        {{platform::LayoutAttribute::height, platform::LayoutGuide::parent, platform::LayoutAttribute::height, 0.5, 0},
         {platform::LayoutAttribute::bottom, platform::LayoutGuide::parent, platform::LayoutAttribute::bottom}});
    show("<body style='margin:0;background:transparent'><div style='height:100px;background:rgb(255,0,0)'></div>");
    EXPECT_EQ(heard->drawn.back(), (std::pair<double, double>{400, 300}));
    turnFor(std::chrono::milliseconds{500});
    EXPECT_EQ(window.colourAt(200, 350), "srgb(255,0,0)");
    EXPECT_EQ(window.colourAt(200, 500), application);
    window.keepPicture("page");
}

// The delegate may end the web view whatever it is told, and hears nothing more of it.
TEST_F(Pages, AWebViewMayEndInsideWhatItTells) {
    server.set("/page", "<script>setInterval(() => location.href = 'orbinelurl://tick', 1)</script>");
    heard->onFinish = [&] {
        web->view()->removeFromParent();
        web.reset();
    };
    web->load(server.url("/page"));
    ASSERT_TRUE(turnUntil([&] { return web == nullptr; }));
    const auto actions = heard->actions.size();
    turnFor(std::chrono::milliseconds{200});
    EXPECT_EQ(heard->actions.size(), actions);
    EXPECT_THAT(heard->drawn, testing::IsEmpty());
}

// A page keeps nothing beyond its own life: the next one finds neither its cookies nor its storage.
TEST_F(Pages, NothingOfAPageIsFoundByTheNext) {
    show("");
    EXPECT_EQ(evaluate("(document.cookie = 'a=b; max-age=1000', localStorage.c = 'd', document.cookie)"), Value("a=b"));
    web->view()->removeFromParent();
    web = std::move(std::get<std::unique_ptr<platform::WebView>>(views->makeWebView({}, heard)));
    views->overlay()->addChild(web->view());
    show("");
    EXPECT_EQ(evaluate("document.cookie + String(localStorage.c)"), Value("undefined"));
}

}  // namespace
}  // namespace orbinel::hosts
