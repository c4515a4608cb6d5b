#include "hosts/linux/curl_transfer.hpp"

#include <strings.h>

#include <algorithm>
#include <limits>
#include <new>
#include <string_view>

namespace orbinel::hosts {

namespace {

constexpr std::size_t maximumBodyBytes = 16 * 1024 * 1024;
constexpr std::size_t maximumHeaderBytes = 256 * 1024;
constexpr long maximumRedirects = 20;
constexpr const char* protocols = "http,https";
constexpr const char* secureProtocol = "https";

bool sameName(std::string_view left, std::string_view right) noexcept {
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

std::string_view trimmed(std::string_view text) noexcept {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

/// libcurl itself would guess a scheme for "host/path"; a URL without one is a mistake here.
bool isAbsoluteHttpUrl(const std::string& url) {
    const std::unique_ptr<CURLU, void (*)(CURLU*)> parsed(curl_url(), curl_url_cleanup);
    if (!parsed || url.find('\0') != std::string::npos) return false;
    if (curl_url_set(parsed.get(), CURLUPART_URL, url.c_str(), 0) != CURLUE_OK) return false;
    char* scheme = nullptr;
    if (curl_url_get(parsed.get(), CURLUPART_SCHEME, &scheme, 0) != CURLUE_OK) return false;
    const bool known = sameName(scheme, "http") || sameName(scheme, "https");
    curl_free(scheme);
    return known;
}

/// What was to travel unreadable for others must not do so in plain form because a server says so.
const char* protocolsOfRedirects(const platform::HttpRequest& request) noexcept {
    const bool isSecure = sameName(std::string_view(request.url).substr(0, 6), "https:");
    return isSecure && request.method != "GET" ? secureProtocol : protocols;
}

bool holdsControlCharacter(std::string_view text) noexcept {
    return std::any_of(text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
}

bool isToken(std::string_view method) noexcept {
    return !method.empty() && std::all_of(method.begin(), method.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

}  // namespace

CurlTransfer::CurlTransfer(std::uint64_t id, platform::HttpRequest request, platform::HttpCompletion completion)
    : id_(id), request_(std::move(request)), completion_(std::move(completion)) {}

bool CurlTransfer::prepare(CurlEasy easy, const NetworkSettings& settings) {
    easy_ = std::move(easy);
    if (!easy_) return reason_ = "There is no memory for a request.", false;
    if (!isAbsoluteHttpUrl(request_.url)) return reason_ = "The URL is not an absolute http or https URL.", false;
    if (!isToken(request_.method)) return reason_ = "The method of the request is not valid.", false;
    if (!addHeaders()) return false;

    CURL* handle = easy_.get();
    settings.apply(handle);
    curl_easy_setopt(handle, CURLOPT_URL, request_.url.c_str());
    setMethodAndBody();
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headerLines_.get());
    // Zero would mean "no time-out" to libcurl.
    const auto timeout = std::clamp<std::int64_t>(request_.timeout.count(), 1, std::numeric_limits<int>::max());
    curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(timeout));
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    // A cancelled request whose host name is still being looked up must not hold the network thread. The newest option
    // of all: a libcurl that knows it knows the others, of which two keep redirections to http and https.
    if (curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L) != CURLE_OK) {
        return reason_ = std::string("libcurl 7.87 or later is needed, not ") + curl_version(), false;
    }
    curl_easy_setopt(handle, CURLOPT_TCP_NODELAY, 1L);
    curl_easy_setopt(handle, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, protocols);
    curl_easy_setopt(handle, CURLOPT_REDIR_PROTOCOLS_STR, protocolsOfRedirects(request_));
    curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, request_.followRedirects ? 1L : 0L);
    curl_easy_setopt(handle, CURLOPT_MAXREDIRS, maximumRedirects);
    curl_easy_setopt(handle, CURLOPT_POSTREDIR, static_cast<long>(CURL_REDIR_POST_ALL));
    curl_easy_setopt(handle, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(maximumBodyBytes));
    curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, &CurlTransfer::onHeader);
    curl_easy_setopt(handle, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &CurlTransfer::onBody);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(handle, CURLOPT_PRIVATE, this);
    curl_easy_setopt(handle, CURLOPT_ERRORBUFFER, detail_.data());
    return true;
}

bool CurlTransfer::addHeaders() {
    bool accepts = false;
    bool hasContentType = false;
    for (const auto& [name, value] : request_.headers) {
        if (name.empty() || name.find(':') != std::string::npos || holdsControlCharacter(name) ||
            holdsControlCharacter(value)) {
            return reason_ = "A header of the request is not valid.", false;
        }
        // libcurl knows the length of what it sends; a second or a wrong one would break the connection.
        if (sameName(name, "Content-Length")) continue;
        accepts = accepts || sameName(name, "Accept");
        hasContentType = hasContentType || sameName(name, "Content-Type");
        // "name;" is how libcurl is told of a header without a value.
        if (!appendHeader(value.empty() ? name + ";" : name + ": " + value)) return false;
    }
    // What libcurl would add of its own accord.
    return appendHeader("Expect:") && (accepts || appendHeader("Accept:")) &&
           (hasContentType || appendHeader("Content-Type:"));
}

bool CurlTransfer::appendHeader(const std::string& line) {
    auto* longer = curl_slist_append(headerLines_.get(), line.c_str());
    if (longer == nullptr) return reason_ = "There is no memory for a request.", false;
    static_cast<void>(headerLines_.release());
    headerLines_.reset(longer);
    return true;
}

void CurlTransfer::setMethodAndBody() {
    CURL* handle = easy_.get();
    if (request_.method == "GET") {
        curl_easy_setopt(handle, CURLOPT_HTTPGET, 1L);
        return;
    }
    if (request_.method == "HEAD") {
        curl_easy_setopt(handle, CURLOPT_NOBODY, 1L);
        return;
    }
    curl_easy_setopt(handle, CURLOPT_POST, 1L);
    curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request_.body.size()));
    curl_easy_setopt(handle, CURLOPT_POSTFIELDS, request_.body.data());
    if (request_.method != "POST") curl_easy_setopt(handle, CURLOPT_CUSTOMREQUEST, request_.method.c_str());
}

platform::HttpOutcome CurlTransfer::outcome(CURLcode code, const NetworkSettings& settings) {
    if (!reason_.empty()) return platform::HttpFailure{std::move(reason_)};
    if (code != CURLE_OK) return platform::HttpFailure{settings.reasonOf(code, detail_.data())};

    long status = 0;
    long redirects = 0;
    char* effectiveUrl = nullptr;
    curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
    curl_easy_getinfo(easy_.get(), CURLINFO_REDIRECT_COUNT, &redirects);
    curl_easy_getinfo(easy_.get(), CURLINFO_EFFECTIVE_URL, &effectiveUrl);

    platform::HttpResponse response;
    response.status = static_cast<int>(status);
    response.headers = std::move(receivedHeaders_);
    if (status != 204 && status != 304) response.body = std::move(receivedBody_);
    response.finalUrl = redirects > 0 && effectiveUrl != nullptr ? effectiveUrl : request_.url;
    return response;
}

CurlEasy CurlTransfer::releaseEasy() noexcept {
    if (easy_) curl_easy_reset(easy_.get());
    return std::move(easy_);
}

void CurlTransfer::beginResponse() noexcept {
    receivedHeaders_.clear();
    receivedBody_.clear();
}

bool CurlTransfer::takeHeaderLine(std::string_view line) {
    receivedHeaderBytes_ += line.size();
    if (receivedHeaderBytes_ > maximumHeaderBytes) return reason_ = "The headers of the response are too long.", false;
    if (line.starts_with("HTTP/")) {
        beginResponse();
        return true;
    }
    const auto colon = line.find(':');
    if (colon == std::string_view::npos) return true;
    receivedHeaders_.emplace_back(trimmed(line.substr(0, colon)), trimmed(line.substr(colon + 1)));
    return true;
}

bool CurlTransfer::takeBody(std::string_view piece) {
    if (receivedBody_.size() + piece.size() > maximumBodyBytes) {
        return reason_ = "The body of the response is too long.", false;
    }
    receivedBody_.append(piece);
    return true;
}

/// How much of what has come was taken; where it is not everything, libcurl ends the transfer.
template <typename Take>
std::size_t CurlTransfer::taken(std::size_t bytes, Take&& take) noexcept {
    try {
        return take() ? bytes : 0;
    } catch (const std::bad_alloc&) {
        reason_ = "Out of memory.";  // short enough to need none
        return 0;
    }
}

std::size_t CurlTransfer::onHeader(const char* data, std::size_t size, std::size_t count, void* self) noexcept {
    auto& transfer = *static_cast<CurlTransfer*>(self);
    const auto bytes = size * count;
    return transfer.taken(bytes, [&] { return transfer.takeHeaderLine({data, bytes}); });
}

std::size_t CurlTransfer::onBody(const char* data, std::size_t size, std::size_t count, void* self) noexcept {
    auto& transfer = *static_cast<CurlTransfer*>(self);
    const auto bytes = size * count;
    return transfer.taken(bytes, [&] { return transfer.takeBody({data, bytes}); });
}

}  // namespace orbinel::hosts
