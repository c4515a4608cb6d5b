#include "apps/orbinel/play/gtk/window_interface.hpp"

#include <chrono>
#include <functional>
#include <utility>

#include "apps/orbinel/play/gtk/window_picture.hpp"
#include "apps/orbinel/play/not_carried_out.hpp"
#include "orbinel/gtk/gtk_host.hpp"

namespace orbinel::tool {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds longestIteration{10};
constexpr std::chrono::seconds longestPresentation{5};
constexpr std::chrono::milliseconds betweenPictures{250};
constexpr std::chrono::seconds longestMovement{3};

void iterateUntil(const std::function<bool()>& condition, Clock::time_point end) {
    while (!condition() && Clock::now() < end) {
        if (g_main_context_iteration(nullptr, FALSE) == FALSE) g_usleep(1000);
    }
}

}  // namespace

WindowInterface::WindowInterface(PlayWait wait)
    : wait_(std::move(wait)),
      views_(std::make_shared<WatchedViews>(hosts::makeGtkViews(window_.get()))),
      page_(views_, wait_) {
    gtk_window_present(window_.get());
    iterateUntil([&] { return gtk_widget_get_width(GTK_WIDGET(window_.get())) > 0; },
                 Clock::now() + longestPresentation);
}

void WindowInterface::iterate() {
    const auto end = Clock::now() + longestIteration;
    while (g_main_context_iteration(nullptr, FALSE) != FALSE && Clock::now() < end) {
    }
}

void WindowInterface::screenshot(const std::string& file) {
    page_.waitUntilDrawn();
    const auto end = Clock::now() + longestMovement;
    auto* content = gtk_window_get_child(window_.get());  // without what the desktop adds around it
    auto picture = pictureOf(content);
    for (bool moves = true; moves && Clock::now() < end;) {
        static_cast<void>(
            wait_([until = Clock::now() + betweenPictures] { return Clock::now() >= until; }, 2 * betweenPictures));
        auto next = pictureOf(content);
        moves = !areEqual(picture.get(), next.get());
        picture = std::move(next);
    }
    if (picture == nullptr) throw NotCarriedOut("the window shows nothing");
    if (gdk_texture_save_to_png(picture.get(), file.c_str()) == FALSE) {
        throw NotCarriedOut("\"" + file + "\" cannot be written");
    }
}

}  // namespace orbinel::tool
