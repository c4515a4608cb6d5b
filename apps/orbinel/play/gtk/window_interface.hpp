#pragma once

#include <memory>
#include <string>

#include "apps/orbinel/play/gtk/live_page.hpp"
#include "apps/orbinel/play/gtk/shop_window.hpp"
#include "apps/orbinel/play/gtk/windowed_page.hpp"
#include "apps/orbinel/play/play_interface.hpp"

namespace orbinel::tool {

/// A small shop in a window of a phone's size, over which the library lays its messages, and real pages in them. GLib's
/// default main context runs only while the play iterates.
class WindowInterface final : public PlayInterface {
public:
    explicit WindowInterface(PlayWait wait);

    std::shared_ptr<platform::Views> views() const override { return views_; }
    PlayedPage& page() override { return page_; }
    void setKeyboardOpen(bool open) override { views_->setKeyboardOpen(open); }
    void iterate() override;
    std::chrono::milliseconds longestWait() const override { return std::chrono::milliseconds(10); }
    Value evaluate(const std::string& expression) override { return page_.evaluate(expression); }

    /// Waits until the window's picture stands still, 3 s at most, so that no fade is caught half-way.
    void screenshot(const std::string& file) override;

private:
    const PlayWait wait_;
    const ShopWindow window_;
    const std::shared_ptr<WatchedViews> views_;
    WindowedPage page_;
};

}  // namespace orbinel::tool
