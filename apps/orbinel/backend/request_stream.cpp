#include "apps/orbinel/backend/request_stream.hpp"

#include <charconv>
#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "apps/orbinel/backend/inspection.hpp"
#include "apps/orbinel/backend/json_writing.hpp"

namespace orbinel::tool {

/// How far a page has been told.
struct RequestStream::Place {
    std::uint64_t run = 0;
    std::uint64_t id = 0;
    std::chrono::milliseconds quiet{0};  // since something was written
};

namespace {

constexpr int maxStreams = 8;
constexpr RequestLog::Limits portion{200, 200'000};
// So often a quiet stream looks whether its page is still there: one that is gone must not hold a place.
constexpr std::chrono::milliseconds glance{250};
// So often it says that it is there.
constexpr std::chrono::milliseconds silence{10'000};

std::uint64_t numberIn(std::string_view text) {
    std::uint64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

std::string eventOf(const RequestLog::View& view, std::uint64_t lastId) {
    const auto run = std::to_string(view.run);
    return "id: " + run + '-' + std::to_string(lastId) + "\ndata: {\"run\":" + run +
           ",\"requests\":" + requestsAsJson(view.requests, BodyWanted::no) + "}\n\n";
}

bool write(httplib::DataSink& sink, const std::string& text) { return sink.write(text.data(), text.size()); }

}  // namespace

void RequestStream::serve(const httplib::Request& request, httplib::Response& response) {
    if (open_.fetch_add(1) >= maxStreams) {
        --open_;
        response.status = 503;
        response.set_content(errorBody("Too many inspector pages are open."), "application/json");
        return;
    }
    // Of a stream that the browser has taken up again by itself, the address is the older one.
    const auto last = request.has_header("Last-Event-ID") ? request.get_header_value("Last-Event-ID")
                                                          : request.get_param_value("since");
    const auto place = std::make_shared<Place>();
    if (const auto dash = last.find('-'); dash != std::string::npos) {
        place->run = numberIn(last);
        place->id = numberIn(std::string_view(last).substr(dash + 1));
    }
    response.set_chunked_content_provider(
        "text/event-stream", [this, place](std::size_t, httplib::DataSink& sink) { return sendNext(*place, sink); },
        [this](bool) { --open_; });
}

bool RequestStream::stayQuiet(Place& place, httplib::DataSink& sink) {
    if (!sink.is_writable()) return false;
    place.quiet += glance;
    if (place.quiet < silence) return true;
    place.quiet = {};
    return write(sink, ":\n\n");
}

bool RequestStream::sendNext(Place& place, httplib::DataSink& sink) const {
    if (!log_.waitForNews(place.run, place.id, glance)) return stayQuiet(place, sink);
    place.quiet = {};
    auto view = log_.after(place.id, portion);
    if (view.run != place.run) {
        place.run = view.run;
        place.id = 0;
        view = log_.after(0, portion);
    }
    if (!view.requests.empty()) place.id = view.requests.back()->id;
    return write(sink, eventOf(view, place.id));
}

}  // namespace orbinel::tool
