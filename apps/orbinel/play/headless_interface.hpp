#pragma once

#include <memory>
#include <string>
#include <utility>

#include "apps/orbinel/play/headless_page.hpp"
#include "apps/orbinel/play/not_carried_out.hpp"
#include "apps/orbinel/play/play_interface.hpp"
#include "orbinel/headless/headless_views.hpp"

namespace orbinel::tool {

/// A window without pixels.
class HeadlessInterface final : public PlayInterface {
public:
    explicit HeadlessInterface(std::shared_ptr<headless::HeadlessViews> views)
        : views_(std::move(views)), page_(views_) {}

    std::shared_ptr<platform::Views> views() const override { return views_; }
    PlayedPage& page() override { return page_; }
    void setKeyboardOpen(bool open) override { views_->setKeyboardOpen(open); }
    void iterate() override {}
    // Real-time work falls due without anybody saying so.
    std::chrono::milliseconds longestWait() const override { return std::chrono::milliseconds(50); }
    Value evaluate(const std::string&) override { throw NotCarriedOut("a headless page runs no scripts"); }
    void screenshot(const std::string&) override { throw NotCarriedOut("a headless window has no picture"); }

private:
    const std::shared_ptr<headless::HeadlessViews> views_;
    HeadlessPlayedPage page_;
};

}  // namespace orbinel::tool
