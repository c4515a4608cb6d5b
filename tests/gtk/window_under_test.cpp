#include "tests/gtk/window_under_test.hpp"

#include <gtest/gtest.h>

#include <cstdlib>

#include <gdk/x11/gdkx.h>  // the last one: its macros bear common names

namespace orbinel::hosts {

namespace {

/// Runs a command and returns what it says.
std::string answerOf(const std::string& command) {
    char* output = nullptr;
    int status = 0;
    const bool ran = g_spawn_command_line_sync(command.c_str(), &output, nullptr, &status, nullptr) != FALSE;
    EXPECT_TRUE(ran && status == 0) << command;
    const TextPointer text(output);
    return text != nullptr ? text.get() : "";
}

}  // namespace

bool turnUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    // Wakes the context, so that a condition that time alone fulfils is looked at.
    const auto heartbeat = g_timeout_add(
        5, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
    bool holds = condition();
    while (!holds && std::chrono::steady_clock::now() < end) {
        g_main_context_iteration(nullptr, TRUE);
        holds = condition();
    }
    g_source_remove(heartbeat);
    return holds;
}

void turnFor(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    static_cast<void>(turnUntil([&] { return std::chrono::steady_clock::now() >= end; }, time));
}

WindowUnderTest::WindowUnderTest(int width, int height) : window_(retain(GTK_WINDOW(gtk_window_new()))) {
    gtk_window_set_default_size(get(), width, height);
    gtk_window_set_decorated(get(), FALSE);
    auto* content = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    entry_ = gtk_entry_new();
    auto* button = gtk_button_new_with_label("Buy");
    gtk_widget_set_vexpand(button, TRUE);
    g_signal_connect(button, "clicked", G_CALLBACK(+[](GtkButton*, gpointer clicks) { ++*static_cast<int*>(clicks); }),
                     &clicks_);
    gtk_box_append(GTK_BOX(content), entry_);
    gtk_box_append(GTK_BOX(content), button);
    gtk_window_set_child(get(), content);
}

WindowUnderTest::~WindowUnderTest() { destroy(); }

void WindowUnderTest::destroy() {
    if (window_ == nullptr) return;
    gtk_window_destroy(get());
    window_.reset();
}

bool WindowUnderTest::present() {
    gtk_window_present(get());
    return turnUntil([&] { return gtk_window_is_active(get()) && gtk_widget_get_width(GTK_WIDGET(get())) > 0; });
}

std::string WindowUnderTest::surface() const {
    return std::to_string(gdk_x11_surface_get_xid(gtk_native_get_surface(GTK_NATIVE(get()))));
}

void WindowUnderTest::click(int x, int y) const {
    answerOf("xdotool mousemove --window " + surface() + " " + std::to_string(x) + " " + std::to_string(y) +
             " click 1");
}

void WindowUnderTest::type(const std::string& text) const { answerOf("xdotool type " + text); }

std::string WindowUnderTest::colourAt(int x, int y) const {
    return answerOf("convert x:" + surface() + " -crop 1x1+" + std::to_string(x) + "+" + std::to_string(y) +
                    " -depth 8 -format %[pixel:p{0,0}] info:");
}

void WindowUnderTest::keepPicture(const std::string& name) const {
    if (const char* directory = std::getenv("ORBINEL_PICTURES")) {
        answerOf("import -window root " + std::string(directory) + "/" + name + ".png");
    }
}

}  // namespace orbinel::hosts
