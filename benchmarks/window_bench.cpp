#include <gtk/gtk.h>
#include <webkit/webkit.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "benchmarks/ratio_table.hpp"
#include "benchmarks/running_library.hpp"
#include "core/current_world.hpp"
#include "core/world.hpp"
#include "orbinel/gtk/gtk_host.hpp"
#include "orbinel/orbinel.hpp"
#include "tests/gtk/page_server.hpp"
#include "tests/gtk/window_under_test.hpp"

namespace orbinel::bench {
namespace {

using Clock = std::chrono::steady_clock;
using hosts::turnUntil;

constexpr const char* page = "<!doctype html><meta charset=utf-8><title>Offer</title><h1>Ten percent off</h1>";

double secondsSince(Clock::time_point begin) { return std::chrono::duration<double>(Clock::now() - begin).count(); }

/// The library in a window on the display, and a server of one page in the same process.
class Stage final : public PresentationObserver {
public:
    static Stage& shared() {
        static Stage only;
        return only;
    }

    /// From a campaign that has been chosen until its fade begins.
    double message() {
        const auto record = std::make_shared<const Dictionary>(Dictionary{
            {"inapp_id", 1}, {"content", Dictionary{{"type", kCUSTOMSREEN}, {"template_url", server_.url("/offer")}}}});
        shown_ = false;
        removed_ = false;
        const auto begin = Clock::now();
        world().campaignSelection.prepareInappToShow(record);
        requireTurn(shown_, "the message is not shown");
        const auto took = secondsSince(begin);
        world().inappPresentation.removeInapp({});
        requireTurn(removed_, "the message is not removed");
        return took;
    }

    /// The same page in a web view of its own, from making it until it has finished.
    double barePage() {
        bool finished = false;
        const auto begin = Clock::now();
        const hosts::ObjectPointer<WebKitNetworkSession> session(webkit_network_session_new_ephemeral());
        auto* view = WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "network-session", session.get(), nullptr));
        auto* overlay = GTK_OVERLAY(gtk_window_get_child(window_.get()));
        gtk_overlay_add_overlay(overlay, GTK_WIDGET(view));
        g_signal_connect(view, "load-changed", G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, bool* done) {
                             if (event == WEBKIT_LOAD_FINISHED) *done = true;
                         }),
                         &finished);
        webkit_web_view_load_uri(view, server_.url(path_).c_str());
        requireTurn(finished, "the bare page does not finish");
        const auto took = secondsSince(begin);
        gtk_overlay_remove_overlay(overlay, GTK_WIDGET(view));
        return took;
    }

private:
    Stage() {
        hosts::LinuxHostOptions options;
        options.dataDirectory = folder_.path();
        options.localisation = "en";
        if (!window_.present()) fail("the window does not become active");
        gtk_window_set_focus(window_.get(), nullptr);  // no message comes while a text field has the keyboard
        host_ = std::make_unique<hosts::GtkHost>(window_.get(), options);
        if (!start(host_->services())) fail("the library does not start");
        world().inappPresentation.observer.bind(*this);
        const auto udid = world().helper.getUdid().value_or("");
        path_ = "/offer/" + udid + "/" + udid + "/en";
        server_.set(path_, page);
    }
    ~Stage() override { shutdown(); }

    static World& world() { return *current_world::get(); }
    [[noreturn]] static void fail(const char* what) {
        std::fprintf(stderr, "orbinel_window_bench: %s.\n", what);
        std::exit(1);
    }
    static void requireTurn(const bool& done, const char* what) {
        if (!turnUntil([&] { return done; })) fail(what);
    }

    void built(const PresentedView&) override {}
    void shown(const PresentedView&) override { shown_ = true; }
    void moved(const PresentedView&) override {}
    void removed(const PresentedView&) override { removed_ = true; }
    void scriptEvaluated(std::string_view) override {}
    void browserOpened(std::string_view) override {}

    const TemporaryFolder folder_;
    hosts::WindowUnderTest window_{390, 844};
    hosts::PageServer server_;
    std::unique_ptr<hosts::GtkHost> host_;
    std::string path_;
    bool shown_ = false;
    bool removed_ = false;
};

void MessageUntilItsFade(benchmark::State& state) {
    for (auto _ : state) state.SetIterationTime(Stage::shared().message());
}
void BarePage(benchmark::State& state) {
    for (auto _ : state) state.SetIterationTime(Stage::shared().barePage());
}

BENCHMARK(MessageUntilItsFade)->UseManualTime()->Iterations(3);
BENCHMARK(BarePage)->UseManualTime()->Iterations(3);

const RatioLine message({"a message in a GTK window, from its choice until it fades in / a bare web view with its page",
                         "MessageUntilItsFade", "BarePage", 1.3});

}  // namespace
}  // namespace orbinel::bench

/// On a display; 77, which counts as skipped, where there is none.
int main(int count, char** words) {
    if (!gtk_init_check()) return 77;
    return orbinel::bench::runBenchmarks(count, words);
}
