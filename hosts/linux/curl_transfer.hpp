#pragma once

#include <curl/curl.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "hosts/linux/network_settings.hpp"
#include "orbinel/platform/http.hpp"

namespace orbinel::hosts {

struct CurlEasyDeleter {
    void operator()(CURL* easy) const noexcept { curl_easy_cleanup(easy); }
};
using CurlEasy = std::unique_ptr<CURL, CurlEasyDeleter>;

/// One request on its way: what is sent, what has been received so far, and who waits for it.
///
/// Threads: made on any thread; from `prepare` on it belongs to the network thread. Never moved while libcurl knows it.
class CurlTransfer {
public:
    CurlTransfer(std::uint64_t id, platform::HttpRequest request, platform::HttpCompletion completion);
    CurlTransfer(const CurlTransfer&) = delete;
    CurlTransfer& operator=(const CurlTransfer&) = delete;

    [[nodiscard]] std::uint64_t id() const noexcept { return id_; }

    /// Sets the handle up for this request. False where the request cannot be sent; `outcome` then says why.
    [[nodiscard]] bool prepare(CurlEasy easy, const NetworkSettings& settings);

    /// The handle; null before `prepare`.
    [[nodiscard]] CURL* easy() const noexcept { return easy_.get(); }

    /// The outcome of a transfer that libcurl has ended.
    [[nodiscard]] platform::HttpOutcome outcome(CURLcode code, const NetworkSettings& settings);

    /// Gives the handle back for the next request, cleared of this one.
    [[nodiscard]] CurlEasy releaseEasy() noexcept;

    void complete(platform::HttpOutcome outcome) { completion_(std::move(outcome)); }

private:
    struct HeaderListDeleter {
        void operator()(curl_slist* list) const noexcept { curl_slist_free_all(list); }
    };

    [[nodiscard]] bool addHeaders();
    [[nodiscard]] bool appendHeader(const std::string& line);
    void setMethodAndBody();
    void beginResponse() noexcept;
    [[nodiscard]] bool takeHeaderLine(std::string_view line);
    [[nodiscard]] bool takeBody(std::string_view piece);
    template <typename Take>
    [[nodiscard]] std::size_t taken(std::size_t bytes, Take&& take) noexcept;

    static std::size_t onHeader(const char* data, std::size_t size, std::size_t count, void* self) noexcept;
    static std::size_t onBody(const char* data, std::size_t size, std::size_t count, void* self) noexcept;

    const std::uint64_t id_;
    const platform::HttpRequest request_;
    const platform::HttpCompletion completion_;
    CurlEasy easy_;
    std::unique_ptr<curl_slist, HeaderListDeleter> headerLines_;
    platform::HttpHeaders receivedHeaders_;
    std::size_t receivedHeaderBytes_ = 0;
    std::string receivedBody_;
    std::string reason_;                          // why we, and not libcurl, ended it
    std::array<char, CURL_ERROR_SIZE> detail_{};  // why libcurl ended it
};

}  // namespace orbinel::hosts
