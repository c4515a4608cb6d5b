#pragma once

#include <httplib.h>

#include <atomic>

#include "apps/orbinel/backend/request_log.hpp"

namespace orbinel::tool {

/// Tells pages of the requests as they come, as server-sent events: first what is remembered, in portions that a page
/// can take in without a stop, then each as it comes.
///
/// An event's data is {"run", "requests"}, the requests without their bodies; where the run is another than before, the
/// earlier requests were forgotten. Its id leads on from there after a lost connection, or as `since` in the address.
///
/// Threads: any; each open stream holds one of the server's. Bounds: eight streams. Ending: they end with the log's
/// waiting.
class RequestStream {
public:
    explicit RequestStream(const RequestLog& log) : log_(log) {}

    void serve(const httplib::Request& request, httplib::Response& response);

private:
    struct Place;
    [[nodiscard]] static bool stayQuiet(Place& place, httplib::DataSink& sink);
    [[nodiscard]] bool sendNext(Place& place, httplib::DataSink& sink) const;

    const RequestLog& log_;
    std::atomic<int> open_ = 0;
};

}  // namespace orbinel::tool
