#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/late.hpp"
#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "inapp/collaborators.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "orbinel/platform/views.hpp"

namespace orbinel {

/// Shows one web page over the application, with a close button. A page that leaves the web (mailto:, tel: and the
/// like) is opened outside; where no web engine can run, the first page is, too.
///
/// Threads: main.
class InternalBrowser {
public:
    struct Needs {
        Reports& reports;
        const Lifetime& lifetime;
        platform::Scheduler& scheduler;
        platform::Views& views;
        Late<UrlOpening>& urlOpening;
    };

    explicit InternalBrowser(const Needs& needs);
    ~InternalBrowser();

    /// Opens the page in place of one that is open. False where it is opened outside.
    bool openBrowserUrl(const std::string& url);
    void bringToFront();
    [[nodiscard]] bool isOpen() const noexcept { return page_ != nullptr; }

    std::function<void()> closed;  // by the person; on the main queue

private:
    class Page;

    [[nodiscard]] std::shared_ptr<Page> makePage();
    void layOut(platform::View& overlay, const std::shared_ptr<platform::View>& close);
    void close();
    void removeViews();
    void openOutside(const std::string& url);

    const Needs needs_;
    std::shared_ptr<Page> page_;
    std::shared_ptr<platform::View> view_;
};

}  // namespace orbinel
