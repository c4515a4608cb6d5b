#include "tests/gtk/page_server.hpp"

#include <gtest/gtest.h>

#include "hosts/gtk/gobject.hpp"

namespace orbinel::hosts {

namespace {

std::string authorityOf(SoupServer* server) {
    GSList* uris = soup_server_get_uris(server);
    const auto port = g_uri_get_port(static_cast<GUri*>(uris->data));
    g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(&g_uri_unref));
    return "127.0.0.1:" + std::to_string(port);
}

ObjectPointer<GTlsCertificate> selfSigned() {
    char* output = nullptr;
    EXPECT_TRUE(
        g_spawn_command_line_sync("openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes "
                                  "-days 2 -subj /CN=acme.test -keyout - -out -",
                                  &output, nullptr, nullptr, nullptr));
    const TextPointer pem(output);
    return ObjectPointer<GTlsCertificate>(g_tls_certificate_new_from_pem(pem.get(), -1, nullptr));
}

}  // namespace

PageServer::PageServer(Transport transport) : server_(soup_server_new("server-header", "pages", nullptr)) {
    const bool tls = transport == Transport::tls;
    if (tls) soup_server_set_tls_certificate(server_.get(), selfSigned().get());
    const auto options = tls ? SOUP_SERVER_LISTEN_IPV4_ONLY | SOUP_SERVER_LISTEN_HTTPS : SOUP_SERVER_LISTEN_IPV4_ONLY;
    EXPECT_TRUE(soup_server_listen_local(server_.get(), 0, static_cast<SoupServerListenOptions>(options), nullptr));
    soup_server_add_handler(server_.get(), "/", &PageServer::answer, this, nullptr);
    origin_ = (tls ? "https://" : "http://") + authorityOf(server_.get());
}

std::string PageServer::deadUrl() { return PageServer().url("/"); }  // its port is free again

void PageServer::answer(SoupServer* /*server*/, SoupServerMessage* message, const char* path, GHashTable* /*query*/,
                        gpointer self) {
    const auto& pages = static_cast<PageServer*>(self)->pages_;
    const auto found = pages.find(path);
    const auto page = found != pages.end() ? found->second : Answer{"<p>nothing here</p>", 404, {}};
    soup_server_message_set_status(message, page.status, nullptr);
    if (!page.location.empty()) {
        soup_message_headers_append(soup_server_message_get_response_headers(message), "Location",
                                    page.location.c_str());
    }
    soup_server_message_set_response(message, "text/html; charset=utf-8", SOUP_MEMORY_COPY, page.html.data(),
                                     page.html.size());
}

}  // namespace orbinel::hosts
