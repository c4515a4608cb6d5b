#pragma once

#include <curl/curl.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "orbinel/linux/linux_host.hpp"

namespace orbinel::hosts {

/// How libcurl reaches the backend: what the options say, else what the environment said when this was made. libcurl
/// itself reads the environment's proxies.
class NetworkSettings {
public:
    explicit NetworkSettings(LinuxNetworkOptions options);

    /// Asks the disk whether the authorities are a file or a directory: for the network thread.
    void apply(CURL* handle) const;

    /// One sentence about a failed transfer. The detail is what libcurl says of this very one; it may be empty.
    [[nodiscard]] std::string reasonOf(CURLcode code, std::string_view detail) const;

private:
    [[nodiscard]] std::string authorities() const;

    std::optional<std::string> proxy_;
    std::string file_;
    std::string directory_;  // both are set only by the environment
    std::filesystem::path either_;
};

}  // namespace orbinel::hosts
