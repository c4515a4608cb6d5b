#pragma once

#include <memory>

#include "orbinel/linux/linux_host.hpp"
#include "orbinel/platform/http.hpp"

namespace orbinel::hosts {

/// HTTP by libcurl: one network thread, started by the first request, that keeps connections alive, speaks HTTP/2 over
/// TLS where the server does, verifies certificates and transfers at most eight requests at once.
class CurlHttp final : public platform::Http {
public:
    explicit CurlHttp(LinuxNetworkOptions options = {});
    ~CurlHttp() override;
    CurlHttp(const CurlHttp&) = delete;
    CurlHttp& operator=(const CurlHttp&) = delete;

    [[nodiscard]] platform::Ticket send(platform::HttpRequest request,
                                        platform::HttpCompletion completion) noexcept override;

private:
    class Network;

    const std::shared_ptr<Network> network_;  // also held by the network thread
};

}  // namespace orbinel::hosts
