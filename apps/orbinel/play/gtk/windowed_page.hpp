#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "apps/orbinel/play/gtk/live_page.hpp"
#include "apps/orbinel/play/play_interface.hpp"
#include "apps/orbinel/play/played_page.hpp"

namespace orbinel::tool {

/// The real page in the web view that was made last. What it does takes time: each call waits, 10 s at most, until it
/// has come to the library.
class WindowedPage final : public PlayedPage {
public:
    WindowedPage(std::shared_ptr<WatchedViews> views, PlayWait wait)
        : views_(std::move(views)), wait_(std::move(wait)) {}

    [[nodiscard]] Value evaluate(const std::string& expression);

    /// Waits until the engine has drawn what the page is now; a page that nobody sees is not drawn. The first page of a
    /// play takes seconds on a slow machine.
    void waitUntilDrawn();

    void finish() override;
    void fail(const platform::LoadFailure& failure) override;
    void progress(double progress) override;
    void navigate(const std::string& url, bool link) override;
    void message(const Value& body) override;
    void terminate() override;
    void tapClose() override;
    void tapBrowserClose() override;

private:
    using Counter = int (LivePage::*)() const;

    [[nodiscard]] std::shared_ptr<LivePage> page() const;
    void runUntilGrown(const std::string& script, Counter counter, const char* otherwise);
    void press(std::int32_t tag, const char* what);

    const std::shared_ptr<WatchedViews> views_;
    const PlayWait wait_;
};

}  // namespace orbinel::tool
