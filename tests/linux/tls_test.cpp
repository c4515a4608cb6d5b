#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <sstream>
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

struct Tls : testing::Test {
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(certify("authority"));
        ASSERT_NO_FATAL_FAILURE(certify("server", "-addext subjectAltName=DNS:localhost -CA " + file("authority.pem") +
                                                      " -CAkey " + file("authority.key")));
        server = std::make_unique<ChildProcess>(
            std::vector<std::string>{"s_server", "-accept", "127.0.0.1:0", "-www", "-cert", file("server.pem"), "-key",
                                     file("server.key")},
            "openssl");
        std::string line;
        while (!line.starts_with("ACCEPT ")) ASSERT_TRUE(server->readLine(line));
        port = line.substr(line.rfind(':'));
    }

    /// A certificate for that name, and its key; signed by itself unless the options say otherwise.
    void certify(const std::string& name, const std::string& options = "") const {
        std::istringstream words("req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -subj /CN=" + name +
                                 " -keyout " + file(name + ".key") + " -out " + file(name + ".pem") + " " + options);
        ASSERT_EQ(ChildProcess({std::istream_iterator<std::string>(words), {}}, "openssl").waitForEnd(), 0);
    }

    [[nodiscard]] std::string file(const std::string& name) const { return directory.path() / name; }

    /// The status of the answer, or why there is none.
    [[nodiscard]] std::string outcomeOf(const std::string& host, LinuxNetworkOptions options) const {
        CurlHttp http(std::move(options));
        platform::HttpRequest request;
        request.method = "GET";
        request.url = "https://" + host + port + "/";
        Gathered<platform::HttpOutcome> outcomes;
        const auto ticket =
            http.send(std::move(request), [&](platform::HttpOutcome outcome) { outcomes.add(std::move(outcome)); });
        EXPECT_TRUE(outcomes.await(1));
        const auto outcome = outcomes.takeAll().front();
        const auto* failure = std::get_if<platform::HttpFailure>(&outcome);
        return failure != nullptr ? failure->reason : std::to_string(std::get<platform::HttpResponse>(outcome).status);
    }

    const TemporaryDirectory directory;
    std::unique_ptr<ChildProcess> server;
    std::string port;  // after a colon
    const std::string refusal = "The server's certificate is not accepted (";
};

TEST_F(Tls, ServersOfAPrivateAuthorityAreTrustedWhereTheOptionsNameIt) {
    EXPECT_EQ(outcomeOf("localhost", {"", file("authority.pem")}), "200");
    EXPECT_TRUE(outcomeOf("localhost", {"", {}}).starts_with(refusal));
    EXPECT_TRUE(
        outcomeOf("127.0.0.1", {"", file("authority.pem")}).starts_with(refusal));  // not the certificate's name
    ASSERT_NO_FATAL_FAILURE(certify("another"));
    EXPECT_TRUE(outcomeOf("localhost", {"", file("another.pem")}).starts_with(refusal));
}

}  // namespace

}  // namespace orbinel::hosts
