#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "orbinel/platform/layout.hpp"
#include "orbinel/platform/web_view.hpp"

namespace orbinel::platform {

/// What a view draws behind its children.
enum class Backdrop {
    clear,   // nothing: what lies below is seen, and touched, wherever no child covers it
    dimmed,  // half-transparent black, which takes the touches
};

/// One rectangle of the interface, with children on top of it. At first it is opaque, without a tag, and nowhere.
///
/// Threads: main thread only. Completions run on the main thread, never inside the call; they may be empty.
/// Seconds: none, less than none and NaN mean at once; more than an hour is an hour.
/// Ending: a view that nobody holds and that has no parent is gone; what it was about to do is dropped.
class View {
public:
    virtual ~View() = default;

    /// A number to find the view by.
    virtual void setTag(std::int32_t tag) noexcept = 0;

    /// From 0, invisible and not to be touched, to 1.
    virtual void setAlpha(double alpha) noexcept = 0;

    /// Changes the alpha over so many seconds. A later call takes over from where this one has come; the completion
    /// then runs at once. It runs also where the view cannot be seen.
    virtual void fadeTo(double alpha, double seconds, std::function<void()> completion) noexcept = 0;

    /// Puts the child on top of the other children; takes it from the parent that it had. Null, the view itself, one
    /// that it is below, and one of another kind of host are ignored.
    virtual void addChild(const std::shared_ptr<View>& child) noexcept = 0;
    virtual void removeFromParent() noexcept = 0;

    /// The view with this tag among this view and all below it; nothing where there is none.
    [[nodiscard]] virtual std::shared_ptr<View> findTag(std::int32_t tag) noexcept = 0;

    /// Replaces the view's constraints; they hold whenever the parent's size changes. Without any, it fills its parent.
    virtual void setConstraints(std::vector<LayoutConstraint> constraints) noexcept = 0;

    /// Moves the view from where its constraints put it, down by so many points (up where negative), over so many
    /// seconds. A later call replaces it.
    virtual void setVerticalOffset(double points, double seconds) noexcept = 0;

    /// Where the view is, offset included; in points from the upper left corner of the window.
    [[nodiscard]] virtual Rectangle frame() const noexcept = 0;
};

/// The application's window, as far as something is laid over it.
///
/// Threads: main thread only, where nothing else is said.
class Views {
public:
    virtual ~Views() = default;

    /// Whether a text field of the application or of a page has the keyboard. Any thread: mirrored.
    [[nodiscard]] virtual bool isKeyboardOpen() const noexcept = 0;

    /// The view that lies over everything that the application shows, for what the library shows. Clear; always the
    /// same one as long as the window is. Nothing where the application has no window; the views below may be nothing
    /// then, too.
    [[nodiscard]] virtual std::shared_ptr<View> overlay() noexcept = 0;

    /// Shows or hides that view with all that is in it, over so many seconds (as above). It is shown at first.
    virtual void setOverlayVisible(bool visible, double seconds) noexcept = 0;

    [[nodiscard]] virtual std::shared_ptr<View> makeView(Backdrop backdrop) noexcept = 0;

    /// A round button with a cross, about 30 points wide, which says its name to who cannot see it. Where `pressed` is
    /// empty, pressing it does nothing.
    [[nodiscard]] virtual std::shared_ptr<View> makeCloseButton(std::string accessibleName,
                                                                std::function<void()> pressed) noexcept = 0;

    /// A web view. The delegate is told of what happens as long as it lives.
    [[nodiscard]] virtual WebViewOrReason makeWebView(WebViewSettings settings,
                                                      std::weak_ptr<WebViewDelegate> delegate) noexcept = 0;
};

}  // namespace orbinel::platform
