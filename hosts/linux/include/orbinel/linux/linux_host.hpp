#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "orbinel/export.hpp"
#include "orbinel/platform/services.hpp"

/// The platform's services on Linux, for applications with or without a window.
namespace orbinel::hosts {

/// How the backend is reached. What is left out is taken from the environment: certificates as it is when the service
/// is made, proxies as it is at each request.
struct LinuxNetworkOptions {
    /// The proxy's URL, such as "http://proxy.acme.com:3128", with user and password where it asks for them
    /// ("http://user:password@…"); also https and socks5. The empty text: none. Absent: http_proxy, https_proxy,
    /// all_proxy. Hosts that no_proxy names are reached directly, whoever has named the proxy.
    std::optional<std::string> proxy;

    /// Whom to trust, in place of the system's authorities: a file of certificates (PEM), or a directory of such files
    /// under their hashed names (`openssl rehash`). Empty: SSL_CERT_FILE, SSL_CERT_DIR, else the system's. One that
    /// cannot be used fails every https request with a reason that names it.
    std::filesystem::path certificateAuthorities;
};

struct LinuxHostOptions {
    /// Where everything is stored; empty: "orbinel/<program name>" in the person's data directory ($XDG_DATA_HOME, else
    /// ~/.local/share). Made where it is missing, closed to other people.
    std::filesystem::path dataDirectory;

    std::optional<std::string> applicationVersion;     // such as "2.1.0"
    std::optional<std::string> applicationIdentifier;  // such as "com.acme.shop"; absent: the program's name
    std::optional<std::string> localisation;           // BCP 47; absent: the person's language
    std::vector<std::string> urlSchemes;               // schemes that open the application, in lower case

    /// What else the application says of itself, such as {"Orbinel": {"Disabled Swizzlers": […]}}.
    Dictionary information;

    /// Whether the system may suspend the process as soon as the application is in the background, as phones do.
    bool backgroundMaySuspend = false;

    LinuxNetworkOptions network = {};
};

/// All services over one data directory, and the main queue that the application has to run.
///
/// Threads: made on the main thread, which is the one that runs the main queue: either by `run`, `runUntil` and
/// `runMainQueue`, or by GLib's main loop after `attachToGlibMainContext`.
/// Ending: the services live as long as somebody holds them, also longer than this object.
class ORBINEL_API LinuxHost {
public:
    /// Returns at once: what is read from the disk is read in the background.
    explicit LinuxHost(LinuxHostOptions options = {});
    ~LinuxHost();
    LinuxHost(const LinuxHost&) = delete;
    LinuxHost& operator=(const LinuxHost&) = delete;

    [[nodiscard]] const platform::Services& services() const noexcept;

    /// Runs what is due on the main queue, and what that posts, without waiting; how many tasks it ran.
    std::size_t runMainQueue();

    /// Runs the main queue until the predicate, asked before each task, holds; false when the limit passes first.
    bool runUntil(const std::function<bool()>& predicate, std::chrono::milliseconds limit);

    /// Runs the main queue until `quit`, which may be called from any thread.
    void run();
    void quit() noexcept;

    /// From now on GLib's default main context runs the main queue whenever the application iterates it.
    void attachToGlibMainContext();

private:
    struct Parts;

    const std::unique_ptr<Parts> parts_;
};

/// HTTP alone, for a mixture of hosts.
[[nodiscard]] ORBINEL_API std::shared_ptr<platform::Http> makeLinuxHttp(LinuxNetworkOptions network = {});

/// Stores in the directory alone, for a mixture of hosts.
[[nodiscard]] ORBINEL_API std::shared_ptr<platform::Defaults> makeLinuxDefaults(
    const std::filesystem::path& directory, std::shared_ptr<const platform::Json> json);

/// Secrets in the folder "secure" of the directory alone, for a mixture of hosts.
[[nodiscard]] ORBINEL_API std::shared_ptr<platform::SecureItems> makeLinuxSecureItems(
    const std::filesystem::path& directory);

}  // namespace orbinel::hosts
