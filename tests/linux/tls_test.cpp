#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "hosts/linux/curl_http.hpp"
#include "tests/linux/temporary_directory.hpp"
#include "tests/port_contract/contract_support.hpp"
#include "tests/support/child_process.hpp"

// Whom https trusts, with a backend whose certificate a private authority has signed.
namespace orbinel::hosts {

namespace {

using contract::Gathered;
using test::ChildProcess;

class Tls : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(certify("authority", {}));
        ASSERT_NO_FATAL_FAILURE(certify("server", {"-addext", "subjectAltName=DNS:localhost", "-CA",
                                                   file("authority.pem"), "-CAkey", file("authority.key")}));
        server = std::make_unique<ChildProcess>(
            std::vector<std::string>{"s_server", "-accept", "127.0.0.1:0", "-www", "-cert", file("server.pem"), "-key",
                                     file("server.key")},
            "openssl");
        std::string line;
        while (!line.starts_with("ACCEPT ")) ASSERT_TRUE(server->readLine(line));
        port = line.substr(line.rfind(':'));
    }

    /// A certificate for that name, and its key; signed by itself unless the options say otherwise.
    void certify(const std::string& name, const std::vector<std::string>& options) {
        std::vector<std::string> arguments{"req",
                                           "-x509",
                                           "-newkey",
                                           "ec",
                                           "-pkeyopt",
                                           "ec_paramgen_curve:P-256",
                                           "-nodes",
                                           "-subj",
                                           "/CN=" + name,
                                           "-keyout",
                                           file(name + ".key"),
                                           "-out",
                                           file(name + ".pem")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        ASSERT_EQ(ChildProcess(std::move(arguments), "openssl").waitForEnd(), 0);
    }

    [[nodiscard]] std::string file(const std::string& name) const { return directory.path() / name; }

    [[nodiscard]] platform::HttpOutcome outcomeOf(const std::string& host, LinuxNetworkOptions options) const {
        CurlHttp http(std::move(options));
        platform::HttpRequest request;
        request.method = "GET";
        request.url = "https://" + host + port + "/";
        Gathered<platform::HttpOutcome> outcomes;
        const auto ticket =
            http.send(std::move(request), [&](platform::HttpOutcome outcome) { outcomes.add(std::move(outcome)); });
        EXPECT_TRUE(outcomes.await(1));
        return outcomes.takeAll().front();
    }

    [[nodiscard]] std::string failureOf(const std::string& host, LinuxNetworkOptions options) const {
        const auto outcome = outcomeOf(host, std::move(options));
        const auto* failure = std::get_if<platform::HttpFailure>(&outcome);
        return failure != nullptr ? failure->reason : "It has succeeded.";
    }

    const TemporaryDirectory directory;
    std::unique_ptr<ChildProcess> server;
    std::string port;  // after a colon
    const std::string refusal = "The server's certificate is not accepted (";
};

TEST_F(Tls, ServersOfAPrivateAuthorityAreTrustedWhereTheOptionsNameIt) {
    const auto outcome = outcomeOf("localhost", {"", file("authority.pem")});
    const auto* response = std::get_if<platform::HttpResponse>(&outcome);
    ASSERT_NE(response, nullptr) << std::get<platform::HttpFailure>(outcome).reason;
    EXPECT_EQ(response->status, 200);

    EXPECT_TRUE(failureOf("localhost", {"", {}}).starts_with(refusal));
    EXPECT_TRUE(
        failureOf("127.0.0.1", {"", file("authority.pem")}).starts_with(refusal));  // not the certificate's name
    ASSERT_NO_FATAL_FAILURE(certify("another", {}));
    EXPECT_TRUE(failureOf("localhost", {"", file("another.pem")}).starts_with(refusal));
}

}  // namespace

}  // namespace orbinel::hosts
