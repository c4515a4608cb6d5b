#pragma once

#include <httplib.h>

#include <string>
#include <string_view>

#include "apps/orbinel/backend/overrides.hpp"
#include "apps/orbinel/backend/request_log.hpp"
#include "apps/orbinel/backend/request_stream.hpp"
#include "apps/orbinel/backend/service.hpp"

namespace orbinel::tool {

/// What people and tools see of the backend and change in it: the inspector page, and all below /inspect.
///
/// Threads: any.
class Inspector {
public:
    struct Needs {
        RequestLog& log;
        Service& service;
        Overrides& overrides;
    };

    explicit Inspector(const Needs& needs) : needs_(needs), stream_(needs.log) {}

    [[nodiscard]] static bool isResponsibleFor(std::string_view path);

    void serve(const httplib::Request& request, const std::string& body, httplib::Response& response);

private:
    struct Exchange;
    struct Route;
    [[nodiscard]] static const Route* routeFor(std::string_view asked);

    void giveRequests(Exchange& exchange);
    void forgetRequests(Exchange& exchange);
    void stream(Exchange& exchange);
    void overrideAnswer(Exchange& exchange);
    void removeOverrides(Exchange& exchange);
    void giveAnswerFiles(Exchange& exchange);
    void editAnswerFile(Exchange& exchange);
    void takeAnswerFileBack(Exchange& exchange);
    void setConsent(Exchange& exchange);
    static void serveRemembered(Exchange& exchange, Inspectable& remembered);

    const Needs needs_;
    RequestStream stream_;
};

}  // namespace orbinel::tool
