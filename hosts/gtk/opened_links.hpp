#pragma once

#include <gio/gio.h>

#include <memory>
#include <string>

#include "hosts/gtk/gobject.hpp"
#include "orbinel/platform/application.hpp"

namespace orbinel::hosts {

/// Hands what the desktop has the application open to the application's delegate: web addresses as activities that a
/// person continues here, other URLs with the newest operation that the delegate implements.
///
/// Threads: main thread only. Listens to the default GApplication that is there when this is made.
class OpenedLinks {
public:
    /// The application has to outlive this.
    explicit OpenedLinks(const platform::Application& application);
    OpenedLinks(const OpenedLinks&) = delete;
    OpenedLinks& operator=(const OpenedLinks&) = delete;

private:
    using Signals = SignalConnections<OpenedLinks>;

    static void opened(GApplication*, GFile** files, gint count, const char* hint, gpointer self) noexcept;

    static void deliver(const std::shared_ptr<platform::Delegate>& delegate, const std::string& url);

    const platform::Application& application_;
    Signals signals_{*this};
};

}  // namespace orbinel::hosts
