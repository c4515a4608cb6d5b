#include <gmock/gmock.h>

#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "hosts/linux/curl_http.hpp"
#include "tests/linux/linux_loopback_server.hpp"
#include "tests/port_contract/contract_support.hpp"

// What HTTP over real connections has to withstand.
namespace orbinel::hosts {

namespace {

using contract::Gathered;

struct Http : testing::Test {
    ~Http() override {
        for (const auto* name : {"http_proxy", "no_proxy", "SSL_CERT_FILE"}) ::unsetenv(name);
    }

    [[nodiscard]] platform::HttpRequest request(const std::string& path) const {
        platform::HttpRequest request;
        request.url = server.url(path);
        return request;
    }

    [[nodiscard]] platform::Ticket send(platform::HttpRequest request) {
        return http->send(std::move(request), [this](platform::HttpOutcome outcome) { outcomes.add(outcome); });
    }

    [[nodiscard]] platform::HttpOutcome outcomeOf(platform::HttpRequest request) {
        static_cast<void>(outcomes.takeAll());
        const auto ticket = send(std::move(request));
        EXPECT_TRUE(outcomes.await(1));
        return outcomes.takeAll().front();
    }

    [[nodiscard]] std::string failureOf(platform::HttpRequest request) {
        const auto outcome = outcomeOf(std::move(request));
        const auto* failure = std::get_if<platform::HttpFailure>(&outcome);
        return failure != nullptr && !failure->cancelled ? failure->reason : "";
    }

    static std::size_t succeeded(const std::vector<platform::HttpOutcome>& outcomes) {
        return static_cast<std::size_t>(std::count_if(outcomes.begin(), outcomes.end(), [](const auto& outcome) {
            const auto* response = std::get_if<platform::HttpResponse>(&outcome);
            return response != nullptr && response->status == 200;
        }));
    }

    LoopbackServer server;
    Gathered<platform::HttpOutcome> outcomes;
    std::unique_ptr<CurlHttp> http = std::make_unique<CurlHttp>();
};

TEST_F(Http, ManyAtOnceSucceedOverFewConnectionsAndLaterOnesReuseThem) {
    std::vector<platform::Ticket> tickets;
    for (int i = 0; i < 20; ++i) tickets.push_back(send(request("/answer")));
    ASSERT_TRUE(outcomes.await(20));
    EXPECT_EQ(succeeded(outcomes.all()), 20u);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(succeeded({outcomeOf(request("/answer"))}), 1u);

    std::set<int> connections;
    for (const auto& one : server.received()) connections.insert(one.clientPort);
    EXPECT_EQ(server.received().size(), 25u);
    EXPECT_LE(connections.size(), 8u);
}

TEST_F(Http, AWaitingRequestsTimeOutDoesNotRun) {
    std::vector<platform::Ticket> tickets;
    auto slow = request("/hang");
    slow.timeout = std::chrono::milliseconds(1200);
    for (int i = 0; i < 8; ++i) tickets.push_back(send(slow));
    auto waiting = request("/answer");
    waiting.timeout = std::chrono::milliseconds(1000);
    tickets.push_back(send(waiting));
    ASSERT_TRUE(outcomes.await(9));
    EXPECT_EQ(succeeded(outcomes.all()), 1u);
}

TEST_F(Http, WhatNeverEndsOrIsTooLargeIsCutOff) {
    auto trickle = request("/trickle");
    trickle.timeout = std::chrono::milliseconds(150);
    EXPECT_NE(failureOf(trickle), "");
    EXPECT_NE(failureOf(request("/announced-huge")), "");
    EXPECT_NE(failureOf(request("/endless-headers")), "");
    EXPECT_EQ(succeeded({outcomeOf(request("/answer"))}), 1u);
}

TEST_F(Http, SendsNothingThatWasNotAskedForAndNoHeaderTwice) {
    auto post = request("/answer");
    post.method = "PUT";
    post.body = std::string(4000, 'b');  // long enough for a client to ask first whether it is welcome
    post.headers = {{"content-length", "4000"}};
    ASSERT_EQ(succeeded({outcomeOf(post)}), 1u);
    const auto last = server.received().back();
    std::multiset<std::string> names;
    for (auto [name, value] : last.headers) {
        std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
        if (name != "remote_addr" && name != "remote_port" && !name.starts_with("local_")) names.insert(name);
    }
    EXPECT_THAT(names, testing::ElementsAre("content-length", "host"));
    EXPECT_EQ(last.body, post.body);

    auto split = request("/answer");
    split.headers = {{"X-Name", "value\r\nX-Smuggled: yes"}};
    EXPECT_NE(failureOf(split), "");
    auto guessed = request("/answer");
    guessed.url = guessed.url.substr(std::string("http://").size());
    EXPECT_NE(failureOf(guessed), "");
}

TEST_F(Http, EachCompletionRunsOnceHoweverCancellationRacesWithTheAnswer) {
    constexpr std::size_t perThread = 100;
    std::vector<std::thread> threads;
    for (int worker = 0; worker < 3; ++worker) {
        threads.emplace_back([this, worker] {
            for (std::size_t i = 0; i < perThread; ++i) {
                auto ticket = send(request("/answer"));
                for (std::size_t spin = 0; spin < i * static_cast<std::size_t>(worker); ++spin) {
                    std::this_thread::yield();
                }
            }
        });
    }
    for (auto& thread : threads) thread.join();
    ASSERT_TRUE(outcomes.await(3 * perThread));
    http.reset();
    EXPECT_EQ(outcomes.size(), 3 * perThread);
}

TEST_F(Http, ACompletionThatCancelsAnotherFinishedRequestIsObeyed) {
    // All eight hang until they are cancelled by the first completion, which runs on the network thread.
    auto tickets = std::make_shared<std::vector<platform::Ticket>>();
    Gathered<int> filled;
    auto quick = request("/answer");
    auto first = http->send(quick, [&, tickets](const platform::HttpOutcome&) {
        ASSERT_TRUE(filled.await(1));
        tickets->clear();
    });
    for (int i = 0; i < 10; ++i) tickets->push_back(send(request(i % 2 == 0 ? "/hang" : "/answer")));
    filled.add(1);
    ASSERT_TRUE(outcomes.await(10));
    for (const auto& outcome : outcomes.all()) {
        const auto* failure = std::get_if<platform::HttpFailure>(&outcome);
        EXPECT_TRUE(failure == nullptr || failure->cancelled);
    }
}

TEST_F(Http, GoesThroughTheProxyOfTheOptionsElseOfTheEnvironment) {
    auto elsewhere = request("/answer");
    elsewhere.url = "http://nobody.test/answer";  // a host that only a proxy can answer for
    const auto isAnswered = [&](CurlHttp* service) {
        http.reset(service);
        const auto outcome = outcomeOf(elsewhere);
        return std::holds_alternative<platform::HttpResponse>(outcome);
    };
    EXPECT_FALSE(isAnswered(new CurlHttp()));
    EXPECT_TRUE(isAnswered(new CurlHttp({server.url(""), {}})));

    ::setenv("http_proxy", server.url("").c_str(), 1);
    EXPECT_TRUE(isAnswered(new CurlHttp()));
    EXPECT_FALSE(isAnswered(new CurlHttp({"", {}})));
    ::setenv("no_proxy", "nobody.test", 1);
    EXPECT_FALSE(isAnswered(new CurlHttp()));
}

TEST_F(Http, AuthoritiesThatCannotBeUsedFailWithAReasonThatNamesThem) {
    auto secure = request("/answer");
    secure.url.replace(0, 4, "https");
    const std::string reason = "The certificate authorities (/nowhere/authorities.pem) cannot be used.";
    http = std::make_unique<CurlHttp>(LinuxNetworkOptions{{}, "/nowhere/authorities.pem"});
    EXPECT_EQ(failureOf(secure), reason);
    EXPECT_EQ(failureOf(request("/answer")), "");

    ::setenv("SSL_CERT_FILE", "/nowhere/authorities.pem", 1);
    http = std::make_unique<CurlHttp>();
    EXPECT_EQ(failureOf(secure), reason);
}

}  // namespace

}  // namespace orbinel::hosts
