#include "orbinel/gtk/gtk_host.hpp"

#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "hosts/gtk/iio_accelerometer.hpp"
#include "tests/gtk/portal_under_test.hpp"
#include "tests/gtk/private_bus.hpp"
#include "tests/gtk/window_under_test.hpp"
#include "tests/linux/temporary_directory.hpp"

namespace orbinel::hosts {
namespace {

namespace names = platform::notification_names;
namespace operations = platform::delegate_operations;
using platform::ApplicationState;

/// Implements the operations by noting what they are given.
struct NotingDelegate : platform::Delegate {
    using Operations = std::initializer_list<std::string_view>;

    explicit NotingDelegate(Operations implemented)
        : Delegate(std::make_shared<platform::DelegateClass>("AcmeDelegate")) {
        for (const auto operation : implemented) {
            type()->addOperation(operation, [this, operation](auto&, const auto& arguments) {
                const auto& page = arguments.activity.webpageUrl;
                told.push_back(std::string(operation) + " " + arguments.url + page.value_or("") +
                               arguments.userInfo["camp_id"].stringOrEmpty());
                return platform::DelegateResult(true);
            });
        }
    }

    std::vector<std::string> told;
};

struct GtkHostOnScreen : testing::Test {
    [[nodiscard]] static LinuxHostOptions optionsIn(const std::filesystem::path& directory) {
        LinuxHostOptions options;
        options.dataDirectory = directory;
        options.applicationVersion = "2.1.0";
        return options;
    }
    [[nodiscard]] platform::Ticket count(std::string_view name, int& counter) const {
        return host.services().notificationCentre->addObserver(name, [&counter](const Dictionary&) { ++counter; });
    }

    TemporaryDirectory directory;
    WindowUnderTest window{400, 600};
    GtkHost host{window.get(), optionsIn(directory.path())};
    platform::Application& application = *host.services().application;
};

TEST_F(GtkHostOnScreen, TheApplicationIsActiveWhileOneOfItsWindowsIs) {
    int activations = 0;
    int backgrounds = 0;
    const auto ticket = count(names::didBecomeActive, activations);
    const auto backgroundTicket = count(names::didEnterBackground, backgrounds);
    EXPECT_EQ(application.state(), ApplicationState::inactive);
    EXPECT_EQ(application.bundle().version, "2.1.0");
    ASSERT_TRUE(window.present());
    ASSERT_TRUE(turnUntil([&] { return application.state() == ApplicationState::active; }));
    {
        WindowUnderTest dialog(200, 200);  // takes the keyboard; the application keeps it
        ASSERT_TRUE(dialog.present());
        turnFor(std::chrono::milliseconds{100});
        EXPECT_EQ(application.state(), ApplicationState::active);
    }
    ASSERT_TRUE(turnUntil([&] { return gtk_window_is_active(window.get()); }));
    EXPECT_EQ(activations, 1);
    EXPECT_EQ(backgrounds, 0);
    gtk_window_minimize(window.get());
    ASSERT_TRUE(turnUntil([&] { return application.state() == ApplicationState::inactive; }));
    EXPECT_EQ(backgrounds, 0);
    ASSERT_TRUE(turnUntil([&] { return backgrounds == 1; }));
    EXPECT_EQ(application.state(), ApplicationState::background);
    gtk_window_unminimize(window.get());
    gtk_window_present(window.get());
    EXPECT_TRUE(turnUntil([&] { return activations == 2; }));
}

// A person who locks the screen, or ends the application, has left it: its session must be closed there and then.
TEST_F(GtkHostOnScreen, ALockedScreenAndTheEndAreTheBackground) {
    ASSERT_TRUE(window.present());  // by then the fixture's host has found that there is no bus
    const PrivateBus bus;
    ASSERT_NE(bus.connection(), nullptr);
    const auto desktop = ObjectPointer<GApplication>(g_application_new(nullptr, G_APPLICATION_NON_UNIQUE));
    g_application_set_default(desktop.get());
    {
        GtkHost locked(window.get(), optionsIn(directory.path() / "locked"));
        std::vector<std::string> told;
        std::vector<platform::Ticket> tickets;
        for (const auto name : {names::didBecomeActive, names::didEnterBackground, names::willTerminate}) {
            tickets.push_back(locked.services().notificationCentre->addObserver(
                name, [&told, name](const Dictionary&) { told.emplace_back(name); }));
        }
        const auto owning =
            g_bus_own_name_on_connection(bus.connection(), "org.freedesktop.ScreenSaver", G_BUS_NAME_OWNER_FLAGS_NONE,
                                         nullptr, nullptr, nullptr, nullptr);
        const auto lock = [&](gboolean on) {
            g_dbus_connection_emit_signal(bus.connection(), nullptr, "/org/freedesktop/ScreenSaver",
                                          "org.freedesktop.ScreenSaver", "ActiveChanged", g_variant_new("(b)", on),
                                          nullptr);
        };
        ASSERT_TRUE(turnUntil([&] { return told.size() == 1; }));
        turnFor(std::chrono::milliseconds{100});  // the bus answers
        lock(TRUE);
        ASSERT_TRUE(turnUntil([&] { return told.size() == 2; }));
        EXPECT_EQ(locked.services().application->state(), ApplicationState::background);
        lock(FALSE);
        ASSERT_TRUE(turnUntil([&] { return told.size() == 3; }));
        g_signal_emit_by_name(desktop.get(), "shutdown");
        EXPECT_THAT(told,
                    testing::ElementsAre(names::didBecomeActive, names::didEnterBackground, names::didBecomeActive,
                                         names::didEnterBackground, names::willTerminate));
        g_bus_unown_name(owning);
    }
    g_application_set_default(nullptr);
}

TEST_F(GtkHostOnScreen, TheWindowsShapeIsTheOrientation) {
    int turns = 0;
    const auto ticket = count(names::orientationDidChange, turns);
    EXPECT_TRUE(application.isPortrait());
    ASSERT_TRUE(window.present());
    gtk_window_set_default_size(window.get(), 700, 400);
    ASSERT_TRUE(turnUntil([&] { return turns == 1; }));
    EXPECT_FALSE(application.isPortrait());
    gtk_window_set_default_size(window.get(), 400, 400);
    ASSERT_TRUE(turnUntil([&] { return turns == 2; }));
    EXPECT_TRUE(application.isPortrait());
}

TEST_F(GtkHostOnScreen, WhatNothingOpensIsToldOnceAndNeverInsideTheCall) {
    std::vector<bool> opened;
    for (const auto* url : {"acme-nobody://x", "no url", ""}) {
        application.openUrl(url, [&](bool done) { opened.push_back(done); });
    }
    EXPECT_THAT(opened, testing::IsEmpty());
    ASSERT_TRUE(turnUntil([&] { return opened.size() == 3; }));
    EXPECT_THAT(opened, testing::Each(false));
    application.openSettings();
    application.openNotificationSettings();
}

TEST_F(GtkHostOnScreen, WhatTheDesktopOpensReachesTheApplicationsDelegate) {
    const auto desktop = ObjectPointer<GApplication>(g_application_new(nullptr, G_APPLICATION_HANDLES_OPEN));
    g_application_set_default(desktop.get());
    {
        GtkHost opened(window.get(), optionsIn(directory.path() / "opened"));
        const auto open = [&](const char* url) {
            const auto file = ObjectPointer<GFile>(g_file_new_for_uri(url));
            auto* files = file.get();
            g_application_open(desktop.get(), &files, 1, "");
        };
        ASSERT_TRUE(g_application_register(desktop.get(), nullptr, nullptr));
        open("acme://nobody/listens");
        const auto old = std::make_shared<NotingDelegate>(NotingDelegate::Operations{operations::handleOpenUrl});
        opened.services().application->setDelegate(old);
        old->type()->addOperation(operations::openUrlWithOptions, [](auto&, const auto&) { return false; });
        opened.services().application->setDelegate(old);  // whatever was put in front of its class meanwhile
        open("acme://cart?id=1#top");
        const auto delegate = std::make_shared<NotingDelegate>(NotingDelegate::Operations{
            operations::handleOpenUrl, operations::openUrlWithOptions, operations::continueUserActivity});
        opened.services().application->setDelegate(delegate);
        open("acme://cart?id=2");
        open("HTTPS://acme.test/sale?x=%20");
        EXPECT_THAT(old->told, testing::ElementsAre("application:handleOpenURL: acme://cart?id=1#top"));
        EXPECT_THAT(delegate->told,
                    testing::ElementsAre("application:openURL:options: acme://cart?id=2",
                                         testing::AllOf(testing::StartsWith("application:continueUserActivity:"),
                                                        testing::EndsWith("://acme.test/sale?x=%20"))));
    }
    g_application_set_default(nullptr);
}

TEST_F(GtkHostOnScreen, NotificationsGoThroughThePortalAndWhatIsOpenedToTheDelegate) {
    const auto settings = [](const GtkHost& of) {
        std::optional<platform::NotificationSettings> read;
        of.services().notifications->readSettings([&](const auto& found) { read = found; });
        EXPECT_TRUE(turnUntil([&] { return read.has_value(); }));
        return read.value_or(platform::NotificationSettings{}).permission;
    };
    const DesktopNotification offer{"offer", "Sale", "Half the \xff price", {{"camp_id", "7"}}};
    const auto present = [&](GtkHost& by, const DesktopNotification& notification) {
        std::optional<std::optional<std::string>> outcome;
        by.present(notification, [&](const auto& failure) { outcome = failure; });
        EXPECT_TRUE(turnUntil([&] { return outcome.has_value(); }));
        return !outcome->has_value();
    };
    EXPECT_EQ(settings(host), platform::NotificationPermission::notDetermined);
    EXPECT_FALSE(present(host, offer));

    const PrivateBus bus;
    ASSERT_NE(bus.connection(), nullptr);
    GtkHost reached(window.get(), optionsIn(directory.path() / "reached"));
    EXPECT_FALSE(present(reached, offer));  // a bus without a portal
    PortalUnderTest portal(bus.connection());
    const auto delegate = std::make_shared<NotingDelegate>(
        NotingDelegate::Operations{operations::didReceiveNotificationResponse, operations::willPresentNotification});
    reached.services().notifications->setDelegate(delegate);
    EXPECT_EQ(settings(reached), platform::NotificationPermission::granted);
    ASSERT_TRUE(present(reached, offer));
    EXPECT_THAT(portal.shown(), testing::ElementsAre("offer: Sale, Half the \xef\xbf\xbd price"));
    EXPECT_FALSE(present(reached, {"offer", "", "", {{"never", std::nan("")}}}));

    for (const auto* target : {"no JSON", "[]", "7"}) portal.open("offer", target);
    portal.open("offer");
    ASSERT_TRUE(turnUntil([&] { return !delegate->told.empty(); }));
    EXPECT_THAT(delegate->told, testing::ElementsAre(std::string(operations::didReceiveNotificationResponse) + " 7"));
    ASSERT_TRUE(turnUntil([&] { return reached.services().application->state() == ApplicationState::active; }))
        << "the window was presented";
    EXPECT_TRUE(present(reached, offer));
    EXPECT_EQ(delegate->told.back(), std::string(operations::willPresentNotification) + " 7");
    EXPECT_EQ(portal.shown().size(), 1u);

    portal.hold();  // stuck: it takes the call and says nothing
    delegate->type()->removeOperation(operations::willPresentNotification);
    EXPECT_FALSE(present(reached, offer));
    EXPECT_EQ(settings(reached), platform::NotificationPermission::notDetermined);
}

TEST_F(GtkHostOnScreen, TextGoesToTheClipboard) {
    host.services().pasteboard->setText("acme \xc3\xa9 \xff!");
    std::string read;
    gdk_clipboard_read_text_async(
        gdk_display_get_clipboard(gdk_display_get_default()), nullptr,
        [](GObject* clipboard, GAsyncResult* result, gpointer text) {
            const TextPointer found(gdk_clipboard_read_text_finish(GDK_CLIPBOARD(clipboard), result, nullptr));
            *static_cast<std::string*>(text) = found.get();
        },
        &read);
    ASSERT_TRUE(turnUntil([&] { return !read.empty(); }));
    EXPECT_EQ(read, "acme \xc3\xa9 \xef\xbf\xbd!");
}

TEST_F(GtkHostOnScreen, ServicesOutliveTheHostAndTheWindow) {
    platform::Services services;
    {
        GtkHost other(window.get(), optionsIn(directory.path() / "other"));
        services = other.services();
    }
    ASSERT_TRUE(window.present());
    EXPECT_TRUE(turnUntil([&] { return services.application->state() == ApplicationState::active; }));
    window.destroy();
    EXPECT_TRUE(turnUntil([&] { return services.application->state() == ApplicationState::background; }));
    EXPECT_EQ(services.views->overlay(), nullptr);
}

TEST_F(GtkHostOnScreen, AnAccelerometerTellsInGWhatTheKernelMeasuresUntilNobodyListens) {
    const auto write = [&](const std::string& file, const std::string& text) {
        std::ofstream(directory.path() / "devices/iio:device1" / file) << text << '\n';
    };
    std::filesystem::create_directories(directory.path() / "devices/iio:device0");  // of another kind
    std::filesystem::create_directories(directory.path() / "devices/iio:device1");
    write("in_accel_x_raw", "-100");
    write("in_accel_y_raw", "0");
    write("in_accel_z_raw", "200");
    write("in_accel_scale", "0.0980665");

    IioAccelerometer accelerometer(host.services().scheduler, directory.path() / "devices");
    ASSERT_TRUE(turnUntil([&] { return accelerometer.isAvailable(); }));
    std::vector<platform::AccelerationOrReason> samples;
    auto ticket =
        accelerometer.start(std::chrono::milliseconds{5}, [&](const auto& sample) { samples.push_back(sample); });
    ASSERT_TRUE(turnUntil([&] { return samples.size() >= 2; }));
    const auto& first = std::get<platform::Acceleration>(samples.front());
    EXPECT_NEAR(first.x, -1, 1e-9);
    EXPECT_NEAR(first.z, 2, 1e-9);

    std::filesystem::remove(directory.path() / "devices/iio:device1/in_accel_z_raw");
    EXPECT_TRUE(turnUntil([&] { return std::holds_alternative<std::string>(samples.back()); }));
    ticket.cancel();
    const auto count = samples.size();
    turnFor(std::chrono::milliseconds{50});
    EXPECT_EQ(samples.size(), count);

    IioAccelerometer none(host.services().scheduler, directory.path() / "nothing");
    turnFor(std::chrono::milliseconds{20});
    EXPECT_FALSE(none.isAvailable());
}

}  // namespace
}  // namespace orbinel::hosts
