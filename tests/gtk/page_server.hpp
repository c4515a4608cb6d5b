#pragma once

#include <libsoup/soup.h>

#include <map>
#include <string>
#include <utility>

#include "hosts/gtk/gobject.hpp"

namespace orbinel::hosts {

/// Serves pages on a loopback port from GLib's main context.
class PageServer {
public:
    /// With TLS the certificate is one that nobody trusts.
    enum class Transport { plain, tls };

    explicit PageServer(Transport transport = Transport::plain);

    void set(const std::string& path, std::string html, unsigned status = 200) {
        pages_[path] = {std::move(html), status, {}};
    }
    void redirect(const std::string& path, std::string location) { pages_[path] = {{}, 302, std::move(location)}; }
    [[nodiscard]] std::string url(const std::string& path) const { return origin_ + path; }

    /// A URL of a port on which nobody listens.
    [[nodiscard]] static std::string deadUrl();

private:
    struct Answer {
        std::string html;
        unsigned status = 200;
        std::string location;
    };

    static void answer(SoupServer*, SoupServerMessage* message, const char* path, GHashTable* query, gpointer self);

    const ObjectPointer<SoupServer> server_;
    std::string origin_;
    std::map<std::string, Answer> pages_;
};

}  // namespace orbinel::hosts
