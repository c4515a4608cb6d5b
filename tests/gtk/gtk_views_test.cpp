#include "hosts/gtk/gtk_views.hpp"

#include <gtest/gtest.h>

#include "tests/gtk/window_under_test.hpp"

namespace orbinel::hosts {
namespace {

using platform::Backdrop;
using platform::LayoutAttribute;
using platform::LayoutGuide;

std::vector<platform::LayoutConstraint> box(double x, double y, double width, double height) {
    const auto fixed = [](LayoutAttribute attribute, double constant) {
        return platform::LayoutConstraint{attribute, LayoutGuide::nothing, attribute, 1, constant};
    };
    return {fixed(LayoutAttribute::left, x), fixed(LayoutAttribute::top, y), fixed(LayoutAttribute::width, width),
            fixed(LayoutAttribute::height, height)};
}

struct GtkViewsOnScreen : testing::Test {
    void SetUp() override { ASSERT_TRUE(window.present()); }

    /// Clicks, and gives what the click does the time to happen.
    void click(int x, int y) {
        window.click(x, y);
        turnFor(std::chrono::milliseconds{150});
    }

    WindowUnderTest window{400, 600};
    std::shared_ptr<GtkViews> views = std::make_shared<GtkViews>(window.get());
};

// A template must never take the application's clicks beside it, nor while it is invisible or hidden.
TEST_F(GtkViewsOnScreen, ClicksReachTheApplicationBesideATemplateAndThroughAnInvisibleOne) {
    const auto holder = views->makeView(Backdrop::clear);
    const auto shade = views->makeView(Backdrop::dimmed);
    int closed = 0;
    const auto button = views->makeCloseButton("Close", [&] { ++closed; });
    shade->setConstraints(box(0, 300, 400, 300));
    button->setConstraints(box(350, 10, 30, 30));
    holder->addChild(shade);
    shade->addChild(button);
    views->overlay()->addChild(holder);
    turnFor(std::chrono::milliseconds{100});

    click(200, 200);
    EXPECT_EQ(window.clicksOnTheButton(), 1);
    click(200, 500);
    EXPECT_EQ(window.clicksOnTheButton(), 1);
    click(365, 325);
    EXPECT_EQ(closed, 1);

    holder->setAlpha(0);
    click(200, 500);
    EXPECT_EQ(window.clicksOnTheButton(), 2);
    holder->setAlpha(1);
    views->setOverlayVisible(false, 0);
    click(365, 325);
    EXPECT_EQ(closed, 1);
    EXPECT_EQ(window.clicksOnTheButton(), 3);
}

TEST_F(GtkViewsOnScreen, ADimmedViewDarkensWhatIsBelowAsFarAsItHasFadedIn) {
    const auto shade = views->makeView(Backdrop::dimmed);
    shade->setConstraints(box(0, 300, 400, 300));
    shade->setAlpha(0);
    views->overlay()->addChild(shade);
    turnFor(std::chrono::milliseconds{500});  // the button's own colours come to rest
    const auto plain = window.colourAt(100, 500);
    const auto beside = window.colourAt(100, 200);
    EXPECT_NE(plain, "black");

    bool shown = false;
    shade->fadeTo(1, 0.3, [&] { shown = true; });
    turnFor(std::chrono::milliseconds{150});
    const auto half = window.colourAt(100, 500);
    ASSERT_TRUE(turnUntil([&] { return shown; }));
    turnFor(std::chrono::milliseconds{50});
    const auto dark = window.colourAt(100, 500);
    EXPECT_NE(half, plain);
    EXPECT_NE(dark, half);
    EXPECT_EQ(window.colourAt(100, 200), beside);
}

TEST_F(GtkViewsOnScreen, ATextFieldOfTheApplicationHasTheKeyboardWhileItIsFocused) {
    gtk_window_set_focus(window.get(), nullptr);
    EXPECT_FALSE(views->isKeyboardOpen());
    gtk_widget_grab_focus(window.entry());
    EXPECT_TRUE(views->isKeyboardOpen());
    EXPECT_TRUE(std::make_shared<GtkViews>(window.get())->isKeyboardOpen());  // focused before
    gtk_editable_set_editable(GTK_EDITABLE(window.entry()), FALSE);
    gtk_window_set_focus(window.get(), nullptr);
    EXPECT_FALSE(views->isKeyboardOpen());
    gtk_widget_grab_focus(window.entry());
    EXPECT_FALSE(views->isKeyboardOpen());  // nothing can be written there
}

TEST_F(GtkViewsOnScreen, AChildThatTheApplicationSetsLaterLiesBelowTheOverlayToo) {
    const auto overlay = views->overlay();
    auto* later = gtk_label_new("later");
    gtk_window_set_child(window.get(), later);
    turnFor(std::chrono::milliseconds{50});
    EXPECT_TRUE(gtk_widget_get_mapped(later));
    EXPECT_EQ(views->overlay(), overlay);
    EXPECT_EQ(overlay->frame(), (platform::Rectangle{0, 0, 400, 600}));
}

// GTK places views by itself; frames are told from the constraints. They must not disagree, whatever a view went
// through.
TEST_F(GtkViewsOnScreen, ViewsLieWhereTheirFramesSayAlsoAfterTheyLeftAndCameBack) {
    const auto outer = std::make_shared<GtkView>(Backdrop::clear);
    const auto inner = std::make_shared<GtkView>(Backdrop::dimmed);
    const auto expectPlaced = [&](platform::Rectangle expected) {
        turnFor(std::chrono::milliseconds{100});
        EXPECT_EQ(inner->frame(), expected);
        graphene_rect_t bounds;
        ASSERT_TRUE(gtk_widget_compute_bounds(inner->widget(), GTK_WIDGET(window.get()), &bounds));
        EXPECT_EQ((platform::Rectangle{bounds.origin.x, bounds.origin.y, bounds.size.width, bounds.size.height}),
                  expected);
    };
    outer->setConstraints({{LayoutAttribute::bottom, LayoutGuide::safeArea, LayoutAttribute::bottom, 1, -10},
                           {LayoutAttribute::height, LayoutGuide::parent, LayoutAttribute::height, 0.5, 0}});
    inner->setConstraints(box(350, 10, 30, 40));
    outer->addChild(inner);
    views->overlay()->addChild(outer);
    expectPlaced({350, 300, 30, 40});

    outer->removeFromParent();
    inner->setConstraints({{LayoutAttribute::centreX, LayoutGuide::parent, LayoutAttribute::centreX, 1, 0},
                           {LayoutAttribute::width, LayoutGuide::parent, LayoutAttribute::width, 0.25, 0},
                           {LayoutAttribute::top, LayoutGuide::nothing, LayoutAttribute::top, 1, 20}});
    views->overlay()->addChild(outer);
    expectPlaced({150, 310, 100, 300});

    inner->removeFromParent();
    outer->setVerticalOffset(-50, 0);
    outer->addChild(inner);
    gtk_window_set_child(window.get(), gtk_label_new("another"));
    expectPlaced({150, 260, 100, 300});
    outer->setConstraints(box(0, 0, 20, 5));  // smaller than what lies in it
    inner->setConstraints(box(5, 5, 40, 40));
    expectPlaced({5, -45, 40, 40});
}

TEST_F(GtkViewsOnScreen, WithoutTheWindowViewsAreNothingAndWhatIsHeldStaysHarmless) {
    const auto overlay = views->overlay();
    const auto held = views->makeView(Backdrop::clear);
    overlay->addChild(held);
    window.destroy();
    EXPECT_EQ(views->overlay(), nullptr);
    EXPECT_EQ(views->makeView(Backdrop::clear), nullptr);
    EXPECT_EQ(views->makeCloseButton("Close", {}), nullptr);
    EXPECT_TRUE(std::holds_alternative<std::string>(views->makeWebView({}, {})));
    held->fadeTo(0, 0.01, [] {});
    held->removeFromParent();
    turnFor(std::chrono::milliseconds{50});
}

}  // namespace
}  // namespace orbinel::hosts
