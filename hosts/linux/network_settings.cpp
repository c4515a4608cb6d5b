#include "hosts/linux/network_settings.hpp"

#include <cstdlib>
#include <system_error>
#include <utility>

namespace orbinel::hosts {

namespace {

std::string environmentText(const char* name) {
    const char* text = std::getenv(name);
    return text != nullptr ? text : "";
}

}  // namespace

NetworkSettings::NetworkSettings(LinuxNetworkOptions options)
    : proxy_(std::move(options.proxy)), either_(std::move(options.certificateAuthorities)) {
    if (!either_.empty()) return;
    file_ = environmentText("SSL_CERT_FILE");
    directory_ = environmentText("SSL_CERT_DIR");
}

void NetworkSettings::apply(CURL* handle) const {
    std::error_code error;
    const bool isDirectory = !either_.empty() && std::filesystem::is_directory(either_, error);
    const std::string file = isDirectory || either_.empty() ? file_ : either_.string();
    const std::string directory = isDirectory ? either_.string() : directory_;
    if (proxy_) curl_easy_setopt(handle, CURLOPT_PROXY, proxy_->c_str());
    if (file.empty() && directory.empty()) return;
    // The system's authorities are libcurl's default for both, and must not be trusted beside the ones that are named.
    curl_easy_setopt(handle, CURLOPT_CAINFO, file.empty() ? nullptr : file.c_str());
    curl_easy_setopt(handle, CURLOPT_CAPATH, directory.empty() ? nullptr : directory.c_str());
}

std::string NetworkSettings::reasonOf(CURLcode code, std::string_view detail) const {
    if (code == CURLE_SSL_CACERT_BADFILE) return "The certificate authorities (" + authorities() + ") cannot be used.";
    if (code == CURLE_PEER_FAILED_VERIFICATION && !detail.empty()) {
        return "The server's certificate is not accepted (" + std::string(detail) + ").";
    }
    return std::string(curl_easy_strerror(code)) + ".";
}

std::string NetworkSettings::authorities() const {
    if (!either_.empty()) return either_.string();
    if (!file_.empty()) return file_;
    return directory_.empty() ? "the system's" : directory_;
}

}  // namespace orbinel::hosts
