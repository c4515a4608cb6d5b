#pragma once

#include <gio/gio.h>

#include <functional>
#include <optional>
#include <string>

#include "hosts/gtk/gobject.hpp"

namespace orbinel::hosts {

/// The desktop's portal for notifications, on the session bus.
///
/// Threads: questions from any thread; their answers, and openings, come on the main thread, which has to run the main
/// loop. Nothing waits for the bus, nothing is started by it, and what is not answered within 500 ms is absent.
/// Ending: answers that are under way still come; openings do not.
class NotificationPortal {
public:
    /// What the person has opened: the text that was given when it was shown.
    using Opened = std::function<void(std::string token)>;
    /// Nothing, or one sentence for a log.
    using Done = std::function<void(std::optional<std::string> failure)>;

    /// `identifier`: a later one of the same identifier takes this one's place.
    struct Message {
        std::string identifier;
        std::string title;
        std::string body;
        std::string token;
    };

    explicit NotificationPortal(Opened opened);
    ~NotificationPortal();
    NotificationPortal(const NotificationPortal&) = delete;
    NotificationPortal& operator=(const NotificationPortal&) = delete;

    /// Asks whether there is one.
    void look(Done done) const;

    /// Shows the message. Texts have to be valid UTF-8.
    void show(const Message& message, Done done) const;

private:
    static void connected(GObject*, GAsyncResult* result, gpointer self) noexcept;
    static void actionInvoked(GDBusConnection*, const char* sender, const char* path, const char* interface,
                              const char* signal, GVariant* parameters, gpointer self) noexcept;

    const Opened opened_;
    const ObjectPointer<GCancellable> cancellable_{g_cancellable_new()};
    ObjectPointer<GDBusConnection> bus_;
    guint subscription_ = 0;
};

}  // namespace orbinel::hosts
