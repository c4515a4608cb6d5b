#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "orbinel/export.hpp"
#include "orbinel/platform/device.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "orbinel/platform/views.hpp"

namespace orbinel::headless {

/// A page that a test plays: what its web view was told is kept, and it does what the test says and nothing else.
/// Only the question whether it may be loaded is asked by itself, on the main queue.
///
/// Threads: main thread only.
/// Ending: once the web view is gone nothing happens any more; questions are then answered with `cancel`.
class ORBINEL_API HeadlessPage {
public:
    struct State;

    explicit HeadlessPage(std::shared_ptr<State> state);
    ~HeadlessPage();

    [[nodiscard]] bool isAlive() const;  // whether the web view still is
    [[nodiscard]] const std::string& url() const;
    [[nodiscard]] const platform::WebViewSettings& settings() const;
    [[nodiscard]] const std::vector<std::string>& evaluatedScripts() const;

    /// Begins a navigation; gives what the delegate decided.
    platform::NavigationPolicy navigate(const std::string& url, bool linkActivated = false);
    platform::NavigationPolicy navigate(const platform::NavigationAction& action);

    /// The answer to a navigation arrives, by default that to the page itself.
    platform::NavigationPolicy respond(std::optional<std::int32_t> status = 200);
    platform::NavigationPolicy respond(const platform::NavigationResponse& response);

    /// So much has been loaded, from 0 to 1.
    void progress(double progress);

    /// All has been loaded. The page is drawn as soon as it can be seen.
    void finish();
    void fail(const platform::LoadFailure& failure);
    void terminate();

    /// The page posts to the message handler.
    void message(const Value& body);

private:
    const std::shared_ptr<State> state_;
};

/// One view as it is now.
struct HeadlessViewFacts {
    std::int32_t tag = 0;
    std::size_t depth = 0;      // below the overlay, which has 0
    platform::Rectangle frame;  // in the window, points
    double alpha = 1;           // its own
    bool visible = true;        // neither it nor anything that it is in is hidden or has alpha 0
};

/// A window without pixels, as large as the device's screen and with its safe area. Frames are computed from the
/// constraints when they are asked for; fades and moves take their time on the scheduler's clock.
///
/// Threads: main thread only, but for `isKeyboardOpen` and `setKeyboardOpen`.
class ORBINEL_API HeadlessViews final : public platform::Views {
public:
    HeadlessViews(std::shared_ptr<platform::Scheduler> scheduler, std::shared_ptr<platform::Device> device);
    ~HeadlessViews() override;

    void setKeyboardOpen(bool open);
    /// Without a window there is no overlay; at first there is one.
    void setHasWindow(bool has);
    /// Why no web engine can run; nothing: it can.
    void setWebViewRefusal(std::optional<std::string> reason);

    /// The page of the web view that was made last among those that still are; where none is, of the last one that was;
    /// nothing before the first.
    [[nodiscard]] std::shared_ptr<HeadlessPage> page() const;

    /// The view with this tag that lies on top; nothing where there is none.
    [[nodiscard]] std::optional<HeadlessViewFacts> view(std::int32_t tag) const;
    /// The overlay and all in it, each view before what lies in it or above it.
    [[nodiscard]] std::vector<HeadlessViewFacts> tree() const;

    /// Presses the topmost button with this tag; false where none can be touched.
    bool tap(std::int32_t tag);

    [[nodiscard]] bool isKeyboardOpen() const noexcept override;
    [[nodiscard]] std::shared_ptr<platform::View> overlay() noexcept override;
    void setOverlayVisible(bool visible, double seconds) noexcept override;
    [[nodiscard]] std::shared_ptr<platform::View> makeView(platform::Backdrop backdrop) noexcept override;
    [[nodiscard]] std::shared_ptr<platform::View> makeCloseButton(std::string accessibleName,
                                                                  std::function<void()> pressed) noexcept override;
    [[nodiscard]] platform::WebViewOrReason makeWebView(
        platform::WebViewSettings settings, std::weak_ptr<platform::WebViewDelegate> delegate) noexcept override;

private:
    struct State;

    const std::unique_ptr<State> state_;
};

}  // namespace orbinel::headless
