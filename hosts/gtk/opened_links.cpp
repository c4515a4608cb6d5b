#include "hosts/gtk/opened_links.hpp"

#include <algorithm>
#include <iterator>

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

void OpenedLinks::delegateIsSet(const platform::Delegate& delegate) {
    std::erase_if(known_, [](const OwnOperation& one) { return one.type.expired(); });
    if (!operationOf(delegate).empty()) return;
    const auto own = std::find_if(std::begin(newestFirst), std::end(newestFirst),
                                  [&](std::string_view operation) { return delegate.respondsTo(operation); });
    known_.push_back({delegate.type(), own != std::end(newestFirst) ? *own : newestFirst[0]});
}

std::string_view OpenedLinks::operationOf(const platform::Delegate& delegate) const {
    for (const auto& [type, operation] : known_) {
        if (type.lock() == delegate.type()) return operation;
    }
    return {};
}

void OpenedLinks::opened(GApplication* /*desktop*/, GFile** files, gint count, const char* /*hint*/,
                         gpointer self) noexcept {
    const auto& links = Signals::ownerOf(self);
    const auto delegate = links.application_.delegate();
    if (delegate == nullptr) return;
    const auto operation = links.operationOf(*delegate);  // now, for what is delivered may end this object
    for (gint i = 0; i < count; ++i) deliver(*delegate, operation, TextPointer(g_file_get_uri(files[i])).get());
}

void OpenedLinks::deliver(platform::Delegate& delegate, std::string_view operation, const std::string& url) {
    platform::DelegateArguments arguments;
    if (isWebAddress(url)) {
        arguments.activity.webpageUrl = url;
        delegate.perform(operations::continueUserActivity, arguments);
    } else {
        arguments.url = url;
        delegate.perform(operation, arguments);
    }
}

}  // namespace orbinel::hosts
