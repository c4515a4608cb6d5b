#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "orbinel/platform/views.hpp"
#include "tests/port_contract/contract_support.hpp"

namespace orbinel::contract {

/// Pages that a host's test serves, or plays.
enum class Page {
    answer,       // status 200, drawn at once
    missing,      // status 404, with a body
    unreachable,  // nobody listens
};

/// The other side of a web view. A real engine does by itself what a page does when it arrives; where the web view is
/// played, `arrive` does it.
struct PageDriver {
    virtual ~PageDriver() = default;

    [[nodiscard]] virtual std::string urlOf(Page page) = 0;
    /// Called once after each `load` of such a page.
    virtual void arrive(Page page) = 0;

    // What the page that has arrived does next.
    virtual void navigate(const std::string& url, bool linkActivated) = 0;
    virtual void post(const Value& message) = 0;

    /// Whether scripts really run, so that they can post messages.
    [[nodiscard]] virtual bool runsScripts() const = 0;
    /// Presses the close button that was made last.
    virtual void pressCloseButton() = 0;
};

struct ViewsUnderTest {
    std::shared_ptr<platform::Views> views;
    std::shared_ptr<PageDriver> page;
    platform::Rectangle window;  // what the overlay covers
    double safeTop = 0;          // points
    double safeBottom = 0;
    Drive drive;
};

/// Writes down what a web view tells, in one line each.
class RecordingDelegate final : public platform::WebViewDelegate {
public:
    platform::NavigationPolicy decidePolicyForNavigationAction(
        const platform::NavigationAction& action) noexcept override {
        told("action " + action.url + (action.linkActivated ? " link" : ""));
        return action.url.starts_with("orbinelurl://") ? platform::NavigationPolicy::cancel : actionPolicy;
    }
    platform::NavigationPolicy decidePolicyForNavigationResponse(
        const platform::NavigationResponse& response) noexcept override {
        told("response " + std::to_string(response.status.value_or(0)) + (response.mainFrame ? "" : " frame"));
        return responsePolicy;
    }
    void didFinishNavigation() noexcept override { told("finished"); }
    void didFailNavigation(const platform::LoadFailure& failure) noexcept override {
        told("failed " + failure.domain + (failure.provisional ? " provisional" : ""));
    }
    void contentProcessDidTerminate() noexcept override { told("terminated"); }
    void estimatedProgressChanged(double value) noexcept override { progress.push_back(value); }
    void didReceiveScriptMessage(const Value& body) noexcept override { messages.push_back(body); }
    void wasDrawn(double width, double height) noexcept override { drawn.emplace_back(width, height); }

    [[nodiscard]] bool heard(const std::string& line) const {
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }

    platform::NavigationPolicy actionPolicy = platform::NavigationPolicy::allow;
    platform::NavigationPolicy responsePolicy = platform::NavigationPolicy::allow;
    bool insideCall = false;  // set while the test is inside a method of the web view
    std::vector<std::string> lines;
    std::vector<double> progress;
    std::vector<Value> messages;
    std::vector<std::pair<double, double>> drawn;

private:
    void told(std::string line) {
        EXPECT_FALSE(insideCall) << line;
        lines.push_back(std::move(line));
    }
};

inline platform::LayoutConstraint constrain(platform::LayoutAttribute attribute, platform::LayoutGuide guide,
                                            platform::LayoutAttribute anchor, double multiplier = 1,
                                            double constant = 0) {
    return {attribute, guide, anchor, multiplier, constant};
}

inline platform::LayoutConstraint constrain(platform::LayoutAttribute attribute, double constant) {
    return {attribute, platform::LayoutGuide::nothing, attribute, 1, constant};
}

struct ViewsContract : Contract<ViewsUnderTest> {
    using Attribute = platform::LayoutAttribute;
    using Guide = platform::LayoutGuide;

    [[nodiscard]] std::shared_ptr<platform::View> childOf(platform::View& parent,
                                                          std::vector<platform::LayoutConstraint> constraints = {},
                                                          std::int32_t tag = 0) {
        const auto view = views->makeView(platform::Backdrop::clear);
        view->setTag(tag);
        view->setConstraints(std::move(constraints));
        parent.addChild(view);
        return view;
    }

    /// Hosts lay out on their next frame, in whole pixels.
    void expectFrame(platform::View& view, platform::Rectangle expected) {
        const auto near = [](double a, double b) { return a - b < 1.01 && b - a < 1.01; };
        const auto text = [](const platform::Rectangle& r) {
            return testing::PrintToString(std::vector{r.x, r.y, r.width, r.height});
        };
        EXPECT_TRUE(settles([&] {
            const auto frame = view.frame();
            return near(frame.x, expected.x) && near(frame.y, expected.y) && near(frame.width, expected.width) &&
                   near(frame.height, expected.height);
        })) << text(view.frame())
            << " instead of " << text(expected);
    }

    [[nodiscard]] bool settles(const std::function<bool()>& condition) const {
        return driveUntil(made.drive, condition);
    }

    /// Fails the test by an exception where there can be none.
    std::unique_ptr<platform::WebView> webViewIn(platform::View& parent, platform::WebViewSettings settings = {}) {
        auto webView = std::get<std::unique_ptr<platform::WebView>>(views->makeWebView(std::move(settings), delegate));
        parent.addChild(webView->view());
        return webView;
    }

    void load(platform::WebView& webView, Page page) {
        delegate->insideCall = true;
        webView.load(made.page->urlOf(page));
        delegate->insideCall = false;
        made.page->arrive(page);
    }

    std::shared_ptr<platform::Views> views = made.views;
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
};

using std::chrono::milliseconds;

TEST_P(ViewsContract, TheOverlayCoversTheWindowAndViewsWithoutConstraintsFillTheirParents) {
    const auto overlay = views->overlay();
    ASSERT_NE(overlay, nullptr);
    EXPECT_EQ(overlay, views->overlay());
    const auto outer = childOf(*overlay);
    const auto inner = childOf(*outer);
    expectFrame(*overlay, made.window);
    expectFrame(*inner, made.window);
}

TEST_P(ViewsContract, ConstraintsPlaceAViewInItsParentAndCanBeReplaced) {
    const auto& window = made.window;
    const auto overlay = views->overlay();
    const auto safeHeight = window.height - made.safeTop - made.safeBottom;

    const auto bottom = childOf(*overlay, {constrain(Attribute::bottom, Guide::safeArea, Attribute::bottom),
                                           constrain(Attribute::height, Guide::safeArea, Attribute::height, 0.5)});
    expectFrame(*bottom, {0, made.safeTop + safeHeight / 2, window.width, safeHeight / 2});

    const auto button = childOf(*bottom, {constrain(Attribute::top, Guide::parent, Attribute::top, 1, 10),
                                          constrain(Attribute::height, 30), constrain(Attribute::width, 40),
                                          constrain(Attribute::right, Guide::parent, Attribute::right, 1, -10)});
    expectFrame(*button, {window.width - 50, made.safeTop + safeHeight / 2 + 10, 40, 30});

    // One constraint of an axis: the other half is the parent's; a third one of an axis gives way.
    bottom->setConstraints({constrain(Attribute::centreY, Guide::parent, Attribute::centreY),
                            constrain(Attribute::height, 100), constrain(Attribute::top, 7),
                            constrain(Attribute::left, Guide::parent, Attribute::left)});
    expectFrame(*bottom, {0, window.height / 2 - 50, window.width, 100});
    expectFrame(*button, {window.width - 50, window.height / 2 - 40, 40, 30});
}

TEST_P(ViewsContract, ViewsAreFoundByTagAnywhereBelowAndLeaveWithTheirParent) {
    const auto overlay = views->overlay();
    const auto first = childOf(*overlay, {}, 1);
    const auto second = childOf(*overlay, {}, 2);
    const auto leaf = childOf(*first, {}, 3);
    EXPECT_EQ(overlay->findTag(3), leaf);
    EXPECT_EQ(leaf->findTag(3), leaf);
    EXPECT_EQ(second->findTag(3), nullptr);

    second->addChild(leaf);  // moves it
    EXPECT_EQ(first->findTag(3), nullptr);
    EXPECT_EQ(second->findTag(3), leaf);

    second->removeFromParent();
    second->removeFromParent();
    EXPECT_EQ(overlay->findTag(3), nullptr);
    EXPECT_EQ(second->findTag(3), leaf);
}

TEST_P(ViewsContract, FadesEndOnceOverTimeAndALaterOneTakesOver) {
    const auto view = childOf(*views->overlay());
    std::vector<std::string> ended;
    view->setAlpha(0);
    view->fadeTo(1, 0.2, [&] { ended.emplace_back("in"); });
    made.drive(milliseconds{50});
    EXPECT_TRUE(ended.empty());
    view->fadeTo(0, 0.2, [&] { ended.emplace_back("out"); });
    EXPECT_TRUE(ended.empty());  // never inside the call
    ASSERT_TRUE(settles([&] { return ended.size() == 2; }));
    EXPECT_THAT(ended, testing::ElementsAre("in", "out"));

    views->setOverlayVisible(false, 0);
    bool unseen = false;
    view->fadeTo(1, 0.05, [&] { unseen = true; });
    EXPECT_TRUE(settles([&] { return unseen; }));
}

TEST_P(ViewsContract, WhatAViewWasAboutToDoIsDroppedWithIt) {
    bool ended = false;
    const auto token = std::make_shared<int>();
    auto view = views->makeView(platform::Backdrop::dimmed);
    view->fadeTo(0, 0.01, [&ended, token] { ended = true; });
    view.reset();
    made.drive(milliseconds{50});
    EXPECT_FALSE(ended);
    EXPECT_EQ(token.use_count(), 1);
}

TEST_P(ViewsContract, AVerticalOffsetMovesAViewFromItsPlace) {
    const auto view = childOf(*views->overlay(), {constrain(Attribute::bottom, Guide::parent, Attribute::bottom),
                                                  constrain(Attribute::height, 100)});
    const auto rest = made.window.height - 100;
    view->setVerticalOffset(-60, 0.1);
    expectFrame(*view, {0, rest - 60, made.window.width, 100});
    view->setVerticalOffset(-20, 0);
    expectFrame(*view, {0, rest - 20, made.window.width, 100});
    view->setVerticalOffset(0, 0.1);
    expectFrame(*view, {0, rest, made.window.width, 100});
}

TEST_P(ViewsContract, ACloseButtonCallsWhenItIsPressed) {
    int pressed = 0;
    const auto button = views->makeCloseButton("Close", [&] { ++pressed; });
    ASSERT_NE(button, nullptr);
    views->overlay()->addChild(button);
    made.drive(milliseconds{1});
    made.page->pressCloseButton();
    EXPECT_TRUE(settles([&] { return pressed == 1; }));
}

TEST_P(ViewsContract, TimesThatAreNoneArePassedAtOnceAndChildrenThatCannotBeAreIgnored) {
    const auto outer = childOf(*views->overlay(), {}, 1);
    const auto inner = childOf(*outer, {}, 2);
    int ended = 0;
    for (const double seconds : {0.0, -5.0, std::nan("")}) {
        outer->fadeTo(1, seconds, nullptr);
        const int before = ended;
        inner->fadeTo(1, seconds, [&] { ++ended; });
        EXPECT_EQ(ended, before);  // never inside the call
        outer->setVerticalOffset(0, seconds);
        views->setOverlayVisible(true, seconds);
    }
    EXPECT_TRUE(settles([&] { return ended == 3; }));
    expectFrame(*inner, made.window);

    outer->addChild(nullptr);
    outer->addChild(outer);
    inner->addChild(outer);
    EXPECT_EQ(views->overlay()->findTag(2), inner);
    expectFrame(*inner, made.window);

    const auto button = views->makeCloseButton("Close", nullptr);
    ASSERT_NE(button, nullptr);
    views->overlay()->addChild(button);
    made.drive(milliseconds{1});
    made.page->pressCloseButton();
    made.drive(milliseconds{50});
}

TEST_P(ViewsContract, APageIsAskedForAnsweredAndFinishedInThisOrder) {
    const auto webView = webViewIn(*views->overlay());
    load(*webView, Page::answer);
    ASSERT_TRUE(settles([&] { return delegate->heard("finished") && !delegate->drawn.empty(); }));
    EXPECT_THAT(delegate->lines,
                testing::ElementsAre("action " + made.page->urlOf(Page::answer), "response 200", "finished"));
    ASSERT_FALSE(delegate->progress.empty());
    EXPECT_TRUE(std::is_sorted(delegate->progress.begin(), delegate->progress.end()));
    EXPECT_EQ(delegate->progress.back(), 1);
    EXPECT_NEAR(delegate->drawn.front().first, made.window.width, 1);
    EXPECT_NEAR(delegate->drawn.front().second, made.window.height, 1);
    webView->view()->removeFromParent();
}

TEST_P(ViewsContract, APageThatCannotBeLoadedFailsBeforeItsFirstByte) {
    const auto failure = std::string("failed ") + std::string(platform::LoadFailure::urlLoading) + " provisional";
    const auto webView = webViewIn(*views->overlay());
    load(*webView, Page::unreachable);
    ASSERT_TRUE(settles([&] { return delegate->heard(failure); }));
    for (const auto* unusable : {"", "acme/index.html", "file:///etc/passwd", "javascript:alert(1)"}) {
        delegate->lines.clear();
        delegate->insideCall = true;
        webView->load(unusable);
        delegate->insideCall = false;
        ASSERT_TRUE(settles([&] { return !delegate->lines.empty(); })) << unusable;
        EXPECT_THAT(delegate->lines, testing::ElementsAre(failure)) << unusable;
    }
    made.drive(milliseconds{50});
    EXPECT_FALSE(delegate->heard("finished"));
    webView->view()->removeFromParent();
}

TEST_P(ViewsContract, AStatusIsToldAndARefusedAnswerIsNeverFinished) {
    const auto webView = webViewIn(*views->overlay());
    delegate->responsePolicy = platform::NavigationPolicy::cancel;
    load(*webView, Page::missing);
    ASSERT_TRUE(settles([&] { return delegate->heard("response 404"); }));
    made.drive(milliseconds{100});
    EXPECT_FALSE(delegate->heard("finished"));

    delegate->lines.clear();
    delegate->actionPolicy = platform::NavigationPolicy::cancel;
    load(*webView, Page::answer);
    ASSERT_TRUE(settles([&] { return !delegate->lines.empty(); }));
    made.drive(milliseconds{100});
    EXPECT_FALSE(delegate->heard("response 200"));
    EXPECT_FALSE(delegate->heard("finished"));
    webView->view()->removeFromParent();
}

TEST_P(ViewsContract, APageSpeaksByNavigationsOfTheApplicationsSchemeAndByMessages) {
    const auto webView = webViewIn(*views->overlay());
    load(*webView, Page::answer);
    ASSERT_TRUE(settles([&] { return delegate->heard("finished"); }));
    delegate->lines.clear();

    // Byte for byte, and a cancelled navigation is neither a failure nor the end of the page.
    const std::string payload = "orbinelurl://%7B%22a%22%3A%22%C3%A9%2f%22%2c%22B%22%3A%20%5B1%5D%7D";
    made.page->navigate(payload, false);
    ASSERT_TRUE(settles([&] { return delegate->heard("action " + payload); }));
    made.page->navigate("orbinelurl://link", true);
    ASSERT_TRUE(settles([&] { return delegate->heard("action orbinelurl://link link"); }));
    EXPECT_EQ(delegate->lines.size(), 2u);

    const Dictionary message{{"text", "\"</script>\u2028"}, {"list", Array{1, 2.5, true, Null{}}}};
    made.page->post(message);
    made.page->post("second");
    ASSERT_TRUE(settles([&] { return delegate->messages.size() == 2; }));
    EXPECT_EQ(delegate->messages[0], Value(message));
    EXPECT_EQ(delegate->messages[1], Value("second"));
    webView->view()->removeFromParent();
}

TEST_P(ViewsContract, ScriptsRunInOrderAfterTheStartScript) {
    if (!made.page->runsScripts()) GTEST_SKIP() << "Nothing runs scripts here.";
    const auto webView = webViewIn(*views->overlay(), {false, "window.started = 'yes';"});
    load(*webView, Page::answer);
    ASSERT_TRUE(settles([&] { return delegate->heard("finished"); }));
    for (const auto* script :
         {"webkit.messageHandlers.orbinel.postMessage(window.started)", "no script at all",
          "webkit.messageHandlers.orbinel.postMessage(2)", "webkit.messageHandlers.orbinel.postMessage(3)"}) {
        webView->evaluateJavaScript(script);
    }
    ASSERT_TRUE(settles([&] { return delegate->messages.size() == 3; }));
    EXPECT_THAT(delegate->messages, testing::ElementsAre(Value("yes"), Value(2), Value(3)));
    webView->view()->removeFromParent();
}

TEST_P(ViewsContract, ADestroyedWebViewIsSilentAndADeadDelegateIsNotMissed) {
    auto silent = webViewIn(*views->overlay());
    load(*silent, Page::answer);
    silent->view()->removeFromParent();
    silent.reset();
    delegate->lines.clear();
    made.drive(milliseconds{200});
    EXPECT_THAT(delegate->lines, testing::IsEmpty());

    const auto deaf = webViewIn(*views->overlay());
    delegate.reset();
    deaf->load(made.page->urlOf(Page::answer));
    made.page->arrive(Page::answer);
    made.drive(milliseconds{200});
    deaf->view()->removeFromParent();
}

}  // namespace orbinel::contract
