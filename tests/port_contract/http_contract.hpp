#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "orbinel/platform/http.hpp"
#include "tests/port_contract/contract_support.hpp"

namespace orbinel::contract {

/// What the other side does with a request.
enum class Behaviour {
    answer,       // 200, header "X-Answer: yes", body "hello"
    noContent,    // 204
    serverError,  // 500, body "broken"
    redirect,     // 302 to the URL of `answer`
    seeOther,     // 303 to the URL of `answer`
    circle,       // 302 to itself
    hang,         // takes the request and does not answer
    close,        // closes the connection without an answer
    hugeBody,     // 200, body of 16 MiB and one byte
};

struct ReceivedRequest {
    std::string method;
    platform::HttpHeaders headers;
    std::string body;
};

struct HttpUnderTest {
    std::shared_ptr<platform::Http> http;  // the only reference
    std::function<std::string(Behaviour)> url;
    std::function<std::vector<ReceivedRequest>()> received;  // in order of arrival
    Drive drive;                                             // lets time-outs pass
};

struct HttpContract : Contract<HttpUnderTest> {
    struct Completed {
        platform::HttpOutcome outcome;
        std::thread::id thread;
    };

    [[nodiscard]] platform::HttpRequest request(Behaviour behaviour) const {
        platform::HttpRequest request;
        request.url = made.url(behaviour);
        return request;
    }

    [[nodiscard]] platform::Ticket send(platform::HttpRequest request) { return send(*http, std::move(request)); }

    [[nodiscard]] platform::Ticket send(platform::Http& service, platform::HttpRequest request) {
        return service.send(std::move(request), [gathered = completed](platform::HttpOutcome outcome) {
            gathered->add({std::move(outcome), std::this_thread::get_id()});
        });
    }

    [[nodiscard]] bool completes(std::size_t count) const {
        const auto end = std::chrono::steady_clock::now() + limit;
        while (!completed->await(count, std::chrono::milliseconds{10})) {
            if (std::chrono::steady_clock::now() > end) return false;
            made.drive(std::chrono::milliseconds{10});
        }
        return true;
    }

    [[nodiscard]] platform::HttpOutcome outcomeOf(platform::HttpRequest request) {
        const auto before = completed->size();
        const auto ticket = send(std::move(request));
        if (!completes(before + 1)) return platform::HttpFailure{"the test saw no completion", false};
        return completed->all().back().outcome;
    }

    [[nodiscard]] std::optional<platform::HttpResponse> responseTo(platform::HttpRequest request) {
        auto outcome = outcomeOf(std::move(request));
        if (const auto* failure = std::get_if<platform::HttpFailure>(&outcome)) {
            ADD_FAILURE() << failure->reason;
            return std::nullopt;
        }
        return std::get<platform::HttpResponse>(std::move(outcome));
    }

    [[nodiscard]] std::size_t cancelledCount() const {
        const auto all = completed->all();
        return static_cast<std::size_t>(std::count_if(all.begin(), all.end(), [](const Completed& one) {
            const auto* failure = std::get_if<platform::HttpFailure>(&one.outcome);
            return failure != nullptr && failure->cancelled;
        }));
    }

    /// Waits until the other side has taken so many requests.
    [[nodiscard]] bool reaches(std::size_t count) const {
        const auto end = std::chrono::steady_clock::now() + limit;
        while (made.received().size() < count) {
            if (std::chrono::steady_clock::now() > end) return false;
            std::this_thread::yield();
        }
        return true;
    }

    std::shared_ptr<platform::Http>& http = made.http;
    std::shared_ptr<Gathered<Completed>> completed = std::make_shared<Gathered<Completed>>();
};

TEST_P(HttpContract, SendsTheRequestAsItStandsAndGivesTheAnswerBack) {
    auto post = request(Behaviour::answer);
    post.headers = {{"Content-Type", "application/json"}, {"ts", "1767225690"}};
    post.body = std::string("{\"a\":\"b\0c\"}", 11);
    const auto response = responseTo(post);
    ASSERT_TRUE(response);
    EXPECT_EQ(response->status, 200);
    EXPECT_EQ(response->header("x-answer"), "yes");
    EXPECT_EQ(response->body, "hello");
    EXPECT_EQ(response->finalUrl, post.url);

    ASSERT_EQ(made.received().size(), 1u);
    const auto received = made.received().front();
    EXPECT_EQ(received.method, "POST");
    EXPECT_EQ(received.body, post.body);
    EXPECT_THAT(received.headers, testing::IsSupersetOf(post.headers));
    for (const auto& [name, value] : received.headers) EXPECT_STRCASENE(name.c_str(), "user-agent");
}

TEST_P(HttpContract, EveryStatusIsAResponse) {
    const auto none = responseTo(request(Behaviour::noContent));
    ASSERT_TRUE(none);
    EXPECT_EQ(none->status, 204);
    EXPECT_FALSE(none->body);

    const auto broken = responseTo(request(Behaviour::serverError));
    ASSERT_TRUE(broken);
    EXPECT_EQ(broken->status, 500);
    EXPECT_EQ(broken->body, "broken");
}

TEST_P(HttpContract, RedirectsAreFollowedWhereAskedKeepMethodAndBodyAndEndAtTwenty) {
    std::size_t requests = 0;
    for (const auto behaviour : {Behaviour::redirect, Behaviour::seeOther}) {
        for (const std::string method : {"GET", "POST", "PUT"}) {
            auto sent = request(behaviour);
            sent.method = method;
            sent.body = "kept";
            const auto followed = responseTo(sent);
            ASSERT_TRUE(followed);
            EXPECT_EQ(followed->status, 200);
            EXPECT_EQ(followed->body, "hello");
            EXPECT_EQ(followed->finalUrl, made.url(Behaviour::answer));
            const auto received = made.received();
            ASSERT_EQ(received.size(), requests + 2);
            for (; requests < received.size(); ++requests) {
                EXPECT_EQ(received[requests].method, method);
                EXPECT_EQ(received[requests].body, method == "GET" ? "" : "kept");  // whatever a GET was given
            }
        }
    }
    auto redirected = request(Behaviour::redirect);
    redirected.followRedirects = false;
    const auto stayed = responseTo(redirected);
    ASSERT_TRUE(stayed);
    EXPECT_EQ(stayed->status, 302);
    EXPECT_EQ(stayed->header("location"), made.url(Behaviour::answer));
    EXPECT_EQ(stayed->finalUrl, redirected.url);

    EXPECT_TRUE(std::holds_alternative<platform::HttpFailure>(outcomeOf(request(Behaviour::circle))));
    EXPECT_EQ(made.received().size(), requests + 1 + 1 + 20);
}

TEST_P(HttpContract, WhatGoesWrongIsAFailureWithAReason) {
    auto slow = request(Behaviour::hang);
    slow.timeout = std::chrono::milliseconds{100};
    std::vector<platform::HttpRequest> hopeless{slow, request(Behaviour::close), request(Behaviour::hugeBody)};
    for (const char* url : {"", "nonsense", "ftp://127.0.0.1/file", "file:///etc/passwd", "http://", "http://[::1"}) {
        auto unusable = request(Behaviour::answer);
        unusable.url = url;
        hopeless.push_back(unusable);
    }
    for (const auto& one : hopeless) {
        const auto outcome = outcomeOf(one);
        const auto* failure = std::get_if<platform::HttpFailure>(&outcome);
        ASSERT_NE(failure, nullptr) << one.url;
        EXPECT_FALSE(failure->cancelled) << one.url;
        EXPECT_FALSE(failure->reason.empty()) << one.url;
    }
}

TEST_P(HttpContract, CompletionsRunOnceEachOnOneThreadThatIsNotTheSenders) {
    constexpr std::size_t many = 60;
    std::vector<platform::Ticket> tickets;
    for (std::size_t i = 0; i < many; ++i) {
        tickets.push_back(send(request(i % 2 == 0 ? Behaviour::answer : Behaviour::close)));
    }
    ASSERT_TRUE(completes(many));
    tickets.clear();
    ASSERT_TRUE(std::holds_alternative<platform::HttpResponse>(outcomeOf(request(Behaviour::answer))));

    std::set<std::thread::id> threads;
    for (const auto& one : completed->all()) threads.insert(one.thread);
    EXPECT_EQ(completed->size(), many + 1);
    EXPECT_EQ(threads.size(), 1u);
    EXPECT_FALSE(threads.contains(std::this_thread::get_id()));
    EXPECT_EQ(cancelledCount(), 0u);
}

TEST_P(HttpContract, ACompletionMaySendAndDropItsOwnTicket) {
    struct Chain {
        std::atomic<bool> sending{true};
        platform::Ticket first;
        platform::Ticket second;
    };
    const auto chain = std::make_shared<Chain>();
    Gathered<std::thread::id> reached;
    chain->first = http->send(request(Behaviour::answer), [&, chain](const platform::HttpOutcome&) {
        reached.add(std::this_thread::get_id());
        chain->second = http->send(request(Behaviour::answer), [&, chain](const platform::HttpOutcome&) {
            EXPECT_FALSE(chain->sending);
            chain->second.cancel();
            completed->add({platform::HttpResponse{}, std::this_thread::get_id()});
        });
        chain->sending = false;
    });
    ASSERT_TRUE(completes(1));
    chain->first.cancel();
    EXPECT_THAT(reached.all(), testing::ElementsAre(completed->all().front().thread));
}

TEST_P(HttpContract, DroppedTicketsCancelAndDetachedOnesDoNot) {
    std::vector<platform::Ticket> dropped;
    dropped.push_back(send(request(Behaviour::hang)));
    ASSERT_TRUE(reaches(1));
    for (int i = 0; i < 20; ++i) dropped.push_back(send(request(Behaviour::hang)));
    dropped.clear();
    ASSERT_TRUE(completes(21));
    EXPECT_EQ(cancelledCount(), 21u);

    send(request(Behaviour::answer)).detach();
    ASSERT_TRUE(completes(22));
    EXPECT_EQ(cancelledCount(), 21u);
    EXPECT_EQ(completed->size(), 22u);
}

TEST_P(HttpContract, EndingCancelsWhatIsInFlightBeforeItReturns) {
    auto first = send(request(Behaviour::hang));
    ASSERT_TRUE(reaches(1));
    auto second = send(request(Behaviour::hang));
    http.reset();
    EXPECT_EQ(completed->size(), 2u);
    EXPECT_EQ(cancelledCount(), 2u);
    first.cancel();
    second.cancel();
    EXPECT_EQ(completed->size(), 2u);
}

TEST_P(HttpContract, ACompletionMaySendWhileTheServiceEnds) {
    auto* const raw = http.get();
    const auto again = raw->send(request(Behaviour::hang), [this, raw](platform::HttpOutcome outcome) {
        completed->add({std::move(outcome), std::this_thread::get_id()});
        send(*raw, request(Behaviour::answer)).detach();
    });
    ASSERT_TRUE(reaches(1));
    http.reset();
    EXPECT_EQ(completed->size(), 2u);
    EXPECT_EQ(cancelledCount(), 2u);
}

TEST_P(HttpContract, MayEndInsideACompletion) {
    // The completion must find the last reference; it waits until the test has let go of its own.
    const auto slot = std::make_shared<Gathered<std::shared_ptr<platform::Http>>>();
    auto hanging = send(request(Behaviour::hang));
    ASSERT_TRUE(reaches(1));
    auto ending = http->send(request(Behaviour::answer), [slot, gathered = completed](platform::HttpOutcome outcome) {
        ASSERT_TRUE(slot->await(1));
        auto last = slot->takeAll();
        last.clear();
        gathered->add({std::move(outcome), std::this_thread::get_id()});
    });
    slot->add(std::move(http));
    ASSERT_TRUE(completes(2));
    EXPECT_EQ(cancelledCount(), 1u);
}

}  // namespace orbinel::contract
