#include "hosts/gtk/opened_links.hpp"

#include <string_view>

namespace orbinel::hosts {

namespace {

namespace operations = platform::delegate_operations;

constexpr std::string_view newestFirst[] = {operations::openUrlWithOptions, operations::openUrlWithSourceApplication,
                                            operations::handleOpenUrl};

bool isWebAddress(const std::string& url) {
    const TextPointer scheme(g_uri_parse_scheme(url.c_str()));
    return scheme != nullptr &&
           (g_ascii_strcasecmp(scheme.get(), "http") == 0 || g_ascii_strcasecmp(scheme.get(), "https") == 0);
}

}  // namespace

OpenedLinks::OpenedLinks(const platform::Application& application) : application_(application) {
    if (auto* desktop = g_application_get_default()) {
        signals_.connect(desktop, "open", G_CALLBACK(&OpenedLinks::opened));
    }
}

void OpenedLinks::opened(GApplication* /*desktop*/, GFile** files, gint count, const char* /*hint*/,
                         gpointer self) noexcept {
    const auto delegate = Signals::ownerOf(self).application_.delegate();  // an implementation may end this object
    for (gint i = 0; i < count; ++i) deliver(delegate, TextPointer(g_file_get_uri(files[i])).get());
}

void OpenedLinks::deliver(const std::shared_ptr<platform::Delegate>& delegate, const std::string& url) {
    if (delegate == nullptr) return;
    platform::DelegateArguments arguments;
    if (isWebAddress(url)) {
        arguments.activity.webpageUrl = url;
        delegate->perform(operations::continueUserActivity, arguments);
        return;
    }
    arguments.url = url;
    for (const auto operation : newestFirst) {
        if (!delegate->respondsTo(operation)) continue;
        delegate->perform(operation, arguments);
        return;
    }
}

}  // namespace orbinel::hosts
