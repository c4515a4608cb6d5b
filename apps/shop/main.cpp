#include <glib-unix.h>
#include <gtk/gtk.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "shop/activity_log.hpp"
#include "shop/engagement.hpp"
#include "shop/shop.hpp"
#include "shop/shop_window.hpp"
#include "shop/style.hpp"
#include "shop/visit.hpp"

namespace {

using namespace shop;

constexpr gint64 farewell = 800 * 1000;  // microseconds in which the last session's stop leaves

struct Options {
    std::string endpoint;
    std::string partner = "shop";
    std::filesystem::path dataDirectory;
    std::filesystem::path visit;  // empty: a person is visiting
};

/// Takes the options out of the words, so that links are left. Nothing where they cannot be used; what is wrong with
/// them has been said.
std::optional<Options> read(int& count, char** words) {
    char* endpoint = nullptr;
    char* partner = nullptr;
    char* data = nullptr;
    char* visit = nullptr;
    const GOptionEntry entries[] = {
        {"endpoint", 0, 0, G_OPTION_ARG_STRING, &endpoint, "the API's origin, such as http://127.0.0.1:8787", "URL"},
        {"partner", 0, 0, G_OPTION_ARG_STRING, &partner, "the account's name at the vendor (default: shop)", "NAME"},
        {"data-dir", 0, 0, G_OPTION_ARG_FILENAME, &data, "where everything is stored", "DIR"},
        {"visit", 0, 0, G_OPTION_ARG_FILENAME, &visit, "plays a visit, leaves pictures in DIR, and ends", "DIR"},
        {nullptr, 0, 0, G_OPTION_ARG_NONE, nullptr, nullptr, nullptr}};
    const std::unique_ptr<GOptionContext, decltype(&g_option_context_free)> context(g_option_context_new("[LINK…]"),
                                                                                    &g_option_context_free);
    g_option_context_add_main_entries(context.get(), entries, nullptr);
    GError* error = nullptr;
    const bool understood = g_option_context_parse(context.get(), &count, &words, &error) != FALSE;
    if (!understood) std::fprintf(stderr, "shop: %s\n", error->message);
    g_clear_error(&error);
    Options options;
    if (endpoint != nullptr) options.endpoint = endpoint;
    if (partner != nullptr) options.partner = partner;
    if (visit != nullptr) options.visit = visit;
    options.dataDirectory =
        data != nullptr ? std::filesystem::path(data) : std::filesystem::path(g_get_user_data_dir()) / "orbinel-shop";
    for (auto* text : {endpoint, partner, data, visit}) g_free(text);
    return understood ? std::optional(std::move(options)) : std::nullopt;
}

/// Until the loop has nothing left to do, or the time is over.
void iterateFor(gint64 microseconds) {
    const auto end = g_get_monotonic_time() + microseconds;
    while (g_get_monotonic_time() < end) {
        if (g_main_context_iteration(nullptr, FALSE) == FALSE) g_usleep(2000);
    }
}

gboolean quit(gpointer application) {
    g_application_quit(G_APPLICATION(application));
    return G_SOURCE_CONTINUE;
}

int run(const Options& options, int count, char** words) {
    const ObjectPointer<GApplication> application(
        g_application_new("example.shop", GApplicationFlags(G_APPLICATION_NON_UNIQUE | G_APPLICATION_HANDLES_OPEN)));
    g_application_set_default(application.get());
    g_unix_signal_add(SIGINT, &quit, application.get());
    g_unix_signal_add(SIGTERM, &quit, application.get());
    connect(application.get(), "activate", [] {});
    g_application_hold(application.get());  // the window is not the application's: it lasts longer

    const auto preferencesFile = options.dataDirectory / "preferences.ini";
    const auto preferences = Preferences::read(preferencesFile);
    const auto log = std::make_shared<ActivityLog>();
    installStyle(preferences.dark);
    ShopWindow window(log, [&] { g_application_quit(application.get()); });
    Engagement engagement(window.get(), {options.endpoint, options.partner, options.dataDirectory}, preferences, log);
    Shop shop(engagement, preferences, preferencesFile);
    window.fill(shop);
    gtk_window_present(window.get());
    Visit visit(window, shop, options.visit);
    if (!options.visit.empty()) visit.begin([&] { g_application_quit(application.get()); });

    g_application_run(application.get(), count, words);
    iterateFor(farewell);  // what has not left by then is sent at the next launch
    window.end();
    return visit.exitStatus();
}

}  // namespace

int main(int count, char** words) {
    const auto options = read(count, words);
    if (!options) return 2;
    if (!gtk_init_check()) {
        std::fputs("shop: there is no display.\n", stderr);
        return 2;
    }
    return run(*options, count, words);
}
