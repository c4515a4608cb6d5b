#pragma once

#include <memory>

#include "apps/orbinel/play/played_page.hpp"
#include "orbinel/headless/headless_views.hpp"

namespace orbinel::tool {

/// The page of the web view that was made last of those that still are, which does nothing by itself.
class HeadlessPlayedPage final : public PlayedPage {
public:
    explicit HeadlessPlayedPage(std::shared_ptr<headless::HeadlessViews> views) : views_(std::move(views)) {}

    void finish() override;
    void fail(const platform::LoadFailure& failure) override;
    void progress(double progress) override;
    void navigate(const std::string& url, bool link) override;
    void message(const Value& body) override;
    void terminate() override;
    void tapClose() override;
    void tapBrowserClose() override;

private:
    [[nodiscard]] headless::HeadlessPage& page() const;
    void tap(std::int32_t tag, const char* what);

    const std::shared_ptr<headless::HeadlessViews> views_;
    mutable std::shared_ptr<headless::HeadlessPage> page_;
};

}  // namespace orbinel::tool
