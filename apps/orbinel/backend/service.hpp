#pragma once

#include <rapidjson/document.h>

#include <string>
#include <string_view>

#include "apps/orbinel/backend/answers.hpp"
#include "apps/orbinel/backend/consents.hpp"
#include "apps/orbinel/backend/diagnostic_records.hpp"
#include "apps/orbinel/backend/endpoints.hpp"
#include "apps/orbinel/backend/identities.hpp"
#include "apps/orbinel/backend/reading.hpp"
#include "apps/orbinel/backend/reply.hpp"
#include "apps/orbinel/backend/wizard_connections.hpp"

namespace orbinel::tool {

/// A request with all that an answer to it may depend on.
struct ServiceCall {
    const Incoming& request;
    const rapidjson::Document& payload;  // null where the body was none
    std::string file;                    // the endpoint's answer file, JSON
};

/// What the API does with its requests: it answers them, and remembers what later answers depend on.
///
/// Threads: any.
class Service {
public:
    explicit Service(std::filesystem::path answers) : answers_(std::move(answers)) {}

    /// The answer to a request of the endpoint that could be read.
    [[nodiscard]] Reply reply(const Endpoint& endpoint, const Incoming& request, const Reading& reading,
                              std::string_view origin);

    /// What is shown and forgotten below /inspect under that name; nullptr for other names.
    [[nodiscard]] Inspectable* inspectable(std::string_view name);

    [[nodiscard]] Answers& answers() { return answers_; }
    [[nodiscard]] Consents& consents() { return consents_; }

    // One of these answers each endpoint.
    [[nodiscard]] Reply answerFromFile(const ServiceCall& call);
    [[nodiscard]] Reply getIdentity(const ServiceCall& call);
    [[nodiscard]] Reply setConsent(const ServiceCall& call);
    [[nodiscard]] Reply getConsent(const ServiceCall& call);
    [[nodiscard]] Reply getMessages(const ServiceCall& call);
    [[nodiscard]] Reply takeLogs(const ServiceCall& call);
    [[nodiscard]] Reply connectWizard(const ServiceCall& call);
    [[nodiscard]] Reply disconnectWizard(const ServiceCall& call);
    [[nodiscard]] Reply feedWizard(const ServiceCall& call);
    [[nodiscard]] Reply getRecommendations(const ServiceCall& call);

private:
    template <typename Act>
    [[nodiscard]] Reply withToken(const ServiceCall& call, Act&& act);

    Answers answers_;
    Identities identities_;
    Consents consents_;
    WizardConnections wizard_;
    DiagnosticRecords logs_;
};

}  // namespace orbinel::tool
