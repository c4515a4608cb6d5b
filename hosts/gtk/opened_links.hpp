#pragma once

#include <gio/gio.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/gtk/gobject.hpp"
#include "orbinel/platform/application.hpp"

namespace orbinel::hosts {

/// Hands what the desktop has the application open to the application's delegate: web addresses as activities that a
/// person continues here, other URLs with the newest operation that the application itself implements. The library,
/// which adds those that are missing, is heard in each.
///
/// Threads: main thread only. Listens to the default GApplication that is there when this is made.
class OpenedLinks {
public:
    /// The application has to outlive this.
    explicit OpenedLinks(const platform::Application& application);

    /// Called before anybody else learns of the delegate: what its class implements now is the application's own.
    void delegateIsSet(const platform::Delegate& delegate);

    OpenedLinks(const OpenedLinks&) = delete;
    OpenedLinks& operator=(const OpenedLinks&) = delete;

private:
    using Signals = SignalConnections<OpenedLinks>;

    static void opened(GApplication*, GFile** files, gint count, const char* hint, gpointer self) noexcept;

    struct OwnOperation {
        std::weak_ptr<platform::DelegateClass> type;
        std::string_view operation;
    };

    static void deliver(platform::Delegate& delegate, std::string_view operation, const std::string& url);
    [[nodiscard]] std::string_view operationOf(const platform::Delegate& delegate) const;

    const platform::Application& application_;
    std::vector<OwnOperation> known_;  // of every class that was there, for it may be changed by now
    Signals signals_{*this};
};

}  // namespace orbinel::hosts
