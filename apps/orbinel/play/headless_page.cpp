#include "apps/orbinel/play/headless_page.hpp"

#include <utility>

#include "apps/orbinel/play/not_carried_out.hpp"
#include "inapp/view_tags.hpp"

namespace orbinel::tool {

headless::HeadlessPage& HeadlessPlayedPage::page() const {
    page_ = views_->page();
    if (page_ == nullptr || !page_->isAlive()) throw NotCarriedOut("there is no page");
    return *page_;
}

void HeadlessPlayedPage::finish() {
    auto& loaded = page();
    if (loaded.respond() == platform::NavigationPolicy::cancel) return;
    loaded.progress(1);
    loaded.finish();
}

void HeadlessPlayedPage::fail(const platform::LoadFailure& failure) { page().fail(failure); }

void HeadlessPlayedPage::progress(double progress) { page().progress(progress); }

void HeadlessPlayedPage::navigate(const std::string& url, bool link) { (void)page().navigate(url, link); }

void HeadlessPlayedPage::message(const Value& body) { page().message(body); }

void HeadlessPlayedPage::terminate() { page().terminate(); }

void HeadlessPlayedPage::tapClose() { tap(kBUTTONVIEWTAG, "close button"); }

void HeadlessPlayedPage::tapBrowserClose() { tap(kPUSHBROWSERCLOSEBUTTONVIEWTAG, "browser to close"); }

void HeadlessPlayedPage::tap(std::int32_t tag, const char* what) {
    if (!views_->tap(tag)) throw NotCarriedOut(std::string("there is no ") + what);
}

}  // namespace orbinel::tool
