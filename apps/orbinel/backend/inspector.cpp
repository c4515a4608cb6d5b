#include "apps/orbinel/backend/inspector.hpp"

#include <rapidjson/document.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <variant>

#include "apps/orbinel/backend/access.hpp"
#include "apps/orbinel/backend/endpoints.hpp"
#include "apps/orbinel/backend/inspection.hpp"
#include "apps/orbinel/backend/inspector_files.hpp"
#include "apps/orbinel/backend/json_writing.hpp"
#include "apps/orbinel/backend/payload_reader.hpp"
#include "apps/orbinel/decode/json_text.hpp"

namespace orbinel::tool {
namespace {

constexpr std::string_view root = "/inspect/";
constexpr const char* success = R"({"success": true})";

// The page gets all that it is made of from here, and cannot turn a text into markup or script.
constexpr const char* policy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; base-uri 'none'; "
    "form-action 'none'; frame-ancestors 'none'; require-trusted-types-for 'script'; trusted-types 'none'";

constexpr const char* whatThereIs =
    "There is GET / and, below /inspect: PUT and DELETE answer; GET, PUT and DELETE answer-files; GET stream; GET and "
    "DELETE of requests, identities, consents, wizard, logs; PUT consents.";

std::uint64_t numberParameter(const httplib::Request& request, const char* name, std::uint64_t otherwise) {
    const auto text = request.get_param_value(name);
    std::uint64_t number = otherwise;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

void setHeaders(httplib::Response& response) {
    for (const auto& [name, value] : {std::pair{"Cache-Control", "no-store"},
                                      {"X-Content-Type-Options", "nosniff"},
                                      {"Referrer-Policy", "no-referrer"},
                                      {"Cross-Origin-Resource-Policy", "same-origin"},
                                      {"Cross-Origin-Opener-Policy", "same-origin"},
                                      {"Content-Security-Policy", policy}}) {
        response.set_header(name, value);
    }
}

const Endpoint* endpointWithFile(std::string_view file) {
    const auto all = endpoints();
    const auto found = std::find_if(all.begin(), all.end(), [&](const auto& one) { return one.answerFile == file; });
    return found == all.end() ? nullptr : &*found;
}

std::string_view nameOf(Answers::Origin origin) {
    switch (origin) {
        case Answers::Origin::edited:
            return "edited";
        case Answers::Origin::file:
            return "file";
        case Answers::Origin::builtIn:
            return "built in";
    }
    return {};
}

std::string unknownFile(const std::string& file) { return "There is no answer file \"" + shortened(file, 80) + "\"."; }

}  // namespace

struct Inspector::Exchange {
    const httplib::Request& request;
    const std::string& body;
    httplib::Response& response;

    void answer(int status, const std::string& json) {
        response.status = status;
        response.set_content(json, "application/json");
    }
    /// Success where there is no sentence, else a refusal with it.
    void answer(const std::string& sentence) {
        sentence.empty() ? answer(200, success) : answer(400, errorBody(sentence));
    }
    void answer(const Answers::Outcome& outcome) {
        outcome.outdated ? answer(409, errorBody(outcome.refusal)) : answer(outcome.refusal);
    }
    /// Nothing where the body is no object, which has been answered then.
    std::optional<rapidjson::Document> object() {
        auto parsed = parseJson(body);
        auto* document = std::get_if<rapidjson::Document>(&parsed);
        if (document != nullptr && document->IsObject()) return std::move(*document);
        answer("The body must be a JSON object.");
        return std::nullopt;
    }
};

struct Inspector::Route {
    std::string_view asked;
    void (Inspector::*serve)(Exchange& exchange);
};

const Inspector::Route* Inspector::routeFor(std::string_view asked) {
    static constexpr std::array routes{
        Route{"GET /inspect/requests", &Inspector::giveRequests},
        Route{"DELETE /inspect/requests", &Inspector::forgetRequests},
        Route{"GET /inspect/stream", &Inspector::stream},
        Route{"PUT /inspect/answer", &Inspector::overrideAnswer},
        Route{"DELETE /inspect/answer", &Inspector::removeOverrides},
        Route{"GET /inspect/answer-files", &Inspector::giveAnswerFiles},
        Route{"PUT /inspect/answer-files", &Inspector::editAnswerFile},
        Route{"DELETE /inspect/answer-files", &Inspector::takeAnswerFileBack},
        Route{"PUT /inspect/consents", &Inspector::setConsent},
    };
    const auto found =
        std::find_if(routes.begin(), routes.end(), [&](const Route& route) { return route.asked == asked; });
    return found == routes.end() ? nullptr : &*found;
}

bool Inspector::isResponsibleFor(std::string_view path) {
    return inspectorFile(path) != nullptr || path.starts_with(root);
}

void Inspector::serve(const httplib::Request& request, const std::string& body, httplib::Response& response) {
    setHeaders(response);
    Exchange exchange{request, body, response};
    const auto* file = inspectorFile(request.path);
    if (file != nullptr && (request.method == "GET" || request.method == "HEAD")) {
        response.set_content(file->text.data(), file->text.size(), std::string(file->type));
    } else if (file == nullptr && comesFromAnotherSite(request)) {
        exchange.answer(403,
                        errorBody("This is for the inspector page and for tools, not for a page of another site."));
    } else if (const auto* route = routeFor(request.method + ' ' + request.path)) {
        (this->*route->serve)(exchange);
    } else if (auto* remembered = file == nullptr
                                      ? needs_.service.inspectable(std::string_view(request.path).substr(root.size()))
                                      : nullptr) {
        serveRemembered(exchange, *remembered);
    } else {
        exchange.answer(404, errorBody(whatThereIs));
    }
}

void Inspector::giveRequests(Exchange& exchange) {
    const auto since = numberParameter(exchange.request, "since", 0);
    const auto limit = numberParameter(exchange.request, "limit", SIZE_MAX);
    const auto view = needs_.log.after(since, {limit, SIZE_MAX});
    exchange.response.set_header("X-Inspect-Run", std::to_string(view.run));
    exchange.answer(200, requestsAsJson(view.requests));
}

void Inspector::forgetRequests(Exchange& exchange) {
    needs_.log.clear();
    exchange.answer(200, success);
}

void Inspector::stream(Exchange& exchange) { stream_.serve(exchange.request, exchange.response); }

void Inspector::overrideAnswer(Exchange& exchange) {
    auto wanted = readOverride(exchange.body);
    if (wanted.refusal.empty()) needs_.overrides.set(wanted.path, std::move(wanted.answer));
    exchange.answer(wanted.refusal);
}

void Inspector::removeOverrides(Exchange& exchange) {
    needs_.overrides.clear();
    exchange.answer(200, success);
}

void Inspector::giveAnswerFiles(Exchange& exchange) {
    const auto partner = exchange.request.get_param_value("partner");
    exchange.answer(200, jsonOf([&](JsonWriter& writer) {
                        writer.StartArray();
                        for (const auto& endpoint : endpoints()) {
                            const auto source = needs_.service.answers().sourceFor(endpoint, partner);
                            writer.StartObject();
                            writeMember(writer, "file", endpoint.answerFile);
                            writeMember(writer, "path", endpoint.path);
                            writeMember(writer, "from", nameOf(source.origin));
                            writeMember(writer, "version", source.version());
                            writeMember(writer, "text", source.text);
                            writer.EndObject();
                        }
                        writer.EndArray();
                    }));
}

void Inspector::editAnswerFile(Exchange& exchange) {
    const auto document = exchange.object();
    if (!document) return;
    PayloadReader members(*document);
    const auto file = members.text("file");
    const auto partner = members.text("partner");
    const auto text = members.text("text");
    const auto basedOn = members.text("version");
    if (!members.problem().empty()) return exchange.answer(members.problem() + '.');
    const auto* endpoint = endpointWithFile(file);
    if (endpoint == nullptr) return exchange.answer(unknownFile(file));
    exchange.answer(needs_.service.answers().edit(*endpoint, partner, text, basedOn));
}

void Inspector::takeAnswerFileBack(Exchange& exchange) {
    const auto& request = exchange.request;
    const auto file = request.get_param_value("file");
    const auto* endpoint = endpointWithFile(file);
    if (endpoint == nullptr) return exchange.answer(unknownFile(file));
    exchange.answer(needs_.service.answers().takeBack(*endpoint, request.get_param_value("partner"),
                                                      request.get_param_value("version")));
}

void Inspector::setConsent(Exchange& exchange) {
    const auto document = exchange.object();
    if (!document) return;
    const auto device = usableDevice(PayloadReader(*document).text("udid"));
    if (device.empty()) return exchange.answer("\"udid\" must name a device.");
    needs_.service.consents().set(device, *document);
    exchange.answer(200, success);
}

void Inspector::serveRemembered(Exchange& exchange, Inspectable& remembered) {
    const auto& method = exchange.request.method;
    if (method == "GET") return exchange.answer(200, remembered.asJson());
    if (method != "DELETE") return exchange.answer(405, errorBody("There is GET and DELETE."));
    remembered.clear();
    exchange.answer(200, success);
}

}  // namespace orbinel::tool
