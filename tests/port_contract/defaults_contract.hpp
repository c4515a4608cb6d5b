#pragma once

#include <gmock/gmock.h>

#include <future>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "orbinel/platform/defaults.hpp"
#include "tests/port_contract/contract_support.hpp"

namespace orbinel::contract {

/// Opens the stores over the same storage, as each launch of the application does: what the launch before did not
/// synchronise is gone. The test has let go of the former service and its stores by then.
struct DefaultsUnderTest {
    std::function<std::shared_ptr<platform::Defaults>()> open;
};

struct DefaultsContract : Contract<DefaultsUnderTest> {
    void relaunch() {
        store.reset();
        defaults.reset();
        defaults = made.open();
        store = defaults->standard();
    }

    /// What a completion is given. The state outlives the wait, so that a completion that comes too late hurts nobody.
    template <typename T>
    static std::optional<T> answerOf(const std::function<void(std::function<void(T)>)>& call) {
        const auto promise = std::make_shared<std::promise<T>>();
        auto future = promise->get_future();
        call([promise](T answer) { promise->set_value(std::move(answer)); });
        if (future.wait_for(limit) != std::future_status::ready) {
            ADD_FAILURE() << "no completion";
            return std::nullopt;
        }
        return future.get();
    }

    [[nodiscard]] std::size_t count(const char* key = "queue") const {
        return answerOf<std::size_t>([&](auto done) { store->count(key, std::move(done)); }).value_or(999'999);
    }

    [[nodiscard]] std::vector<platform::StoredElement> take(const char* key = "queue") const {
        return answerOf<std::vector<platform::StoredElement>>([&](auto done) { store->take(key, std::move(done)); })
            .value_or(std::vector<platform::StoredElement>{});
    }

    [[nodiscard]] platform::ReclaimedElements reclaim(const char* key = "queue") const {
        return answerOf<platform::ReclaimedElements>([&](auto done) { store->reclaim(key, std::move(done)); })
            .value_or(platform::ReclaimedElements{});
    }

    [[nodiscard]] std::optional<platform::ElementId> appendInFlight(std::string json) const {
        return answerOf<std::optional<platform::ElementId>>(
                   [&](auto done) { store->appendInFlight("queue", std::move(json), std::move(done)); })
            .value_or(std::nullopt);
    }

    void requeue(platform::ElementId id) const {
        static_cast<void>(answerOf<bool>([&](auto done) { store->requeue("queue", id, [done] { done(true); }); }));
    }

    [[nodiscard]] static std::vector<std::string> jsonOf(const std::vector<platform::StoredElement>& elements) {
        std::vector<std::string> result;
        for (const auto& element : elements) result.push_back(element.json);
        return result;
    }

    std::shared_ptr<platform::Defaults> defaults = made.open();
    std::shared_ptr<platform::DefaultsStore> store = defaults->standard();
};

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST_P(DefaultsContract, CompletionsMayBeLeftOut) {
    store->append("queue", "1");
    store->appendInFlight("queue", "2", nullptr);
    store->take("queue", nullptr);
    store->count("queue", nullptr);
    store->requeue("queue", 12'345, nullptr);
    EXPECT_EQ(count(), 0u);
    relaunch();
    store->reclaim("queue", nullptr);
    EXPECT_THAT(jsonOf(take()), testing::UnorderedElementsAre("1", "2"));
    store->erase({"queue"}, nullptr);
    EXPECT_EQ(count(), 0u);
}

TEST_P(DefaultsContract, KeepsValuesOfEveryKindThatWereSynchronised) {
    const Dictionary values{{"boolean", true},
                            {"int32", 7},
                            {"int64", std::int64_t{9'007'199'254'740'993}},
                            {"real", 0.1},
                            {"text", std::string("nul\0 ş \"", 8)},
                            {"null", Null{}},
                            {"date", Date{1'767'225'600.25}},
                            {"", "empty key"},
                            {"array", Array{1, "two", Null{}, Array{}, Dictionary{}}},
                            {"dictionary", Dictionary{{"z", 1}, {"a", Dictionary{{"deep", true}}}}}};
    std::vector<std::string> keys;
    for (const auto& [key, value] : values) {
        store->set(key, value);
        EXPECT_EQ(store->value(key), value) << key;
        keys.push_back(key);
    }
    store->synchronize();
    relaunch();

    for (const auto& [key, value] : values) EXPECT_EQ(store->value(key), value) << key;
    EXPECT_THAT(store->keys(), testing::UnorderedElementsAreArray(keys));
    EXPECT_EQ(store->value("real").kind(), Value::Kind::real);
    EXPECT_EQ(store->value("dictionary").ifDictionary()->begin()->first, "z");
    EXPECT_TRUE(store->value("unknown").isAbsent());
}

TEST_P(DefaultsContract, LeavesOutOfContainersWhatCannotBeWritten) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    store->set("mixed", Dictionary{{"kept", 1}, {"nan", nan}, {"date", Date{5}}, {"absent", Value{}}});
    store->set("list", Array{1, std::numeric_limits<double>::infinity(), Dictionary{{"date", Date{5}}}, 2});
    store->synchronize();
    relaunch();
    EXPECT_EQ(store->value("mixed"), Value(Dictionary{{"kept", 1}}));
    EXPECT_EQ(store->value("list"), Value(Array{1, Dictionary{}, 2}));
}

TEST_P(DefaultsContract, AKillRevertsToTheLastSynchronize) {
    store->set("changed", 1);
    store->set("removed", 1);
    store->synchronize();
    store->set("changed", 2);
    store->set("removed", Value{});
    store->set("added", 3);
    EXPECT_EQ(store->value("changed"), Value(2));
    EXPECT_TRUE(store->value("removed").isAbsent());
    relaunch();
    EXPECT_EQ(store->value("changed"), Value(1));
    EXPECT_EQ(store->value("removed"), Value(1));
    EXPECT_THAT(store->keys(), UnorderedElementsAre("changed", "removed"));
}

TEST_P(DefaultsContract, StoresAreToldApartByTheirNames) {
    const std::string odd = "../a b/\"ş\"";
    EXPECT_EQ(defaults->suite("a"), defaults->suite("a"));
    defaults->standard()->set("key", "standard");
    defaults->suite("a")->set("key", "suite a");
    defaults->suite(odd)->set("key", "odd");
    defaults->appGroup("a")->set("key", "group a");
    defaults->suite("a")->append("queue", "1");
    for (const auto& one :
         {defaults->standard(), defaults->suite("a"), defaults->suite(odd), defaults->appGroup("a")}) {
        one->synchronize();
    }
    relaunch();
    EXPECT_EQ(defaults->standard()->value("key"), Value("standard"));
    EXPECT_EQ(defaults->suite("a")->value("key"), Value("suite a"));
    EXPECT_EQ(defaults->suite(odd)->value("key"), Value("odd"));
    EXPECT_EQ(defaults->appGroup("a")->value("key"), Value("group a"));
    EXPECT_EQ(count(), 0u);
}

TEST_P(DefaultsContract, ElementsAreTakenOldestFirstAndAreDurableWithoutSynchronize) {
    store->append("queue", R"({"n":1})");
    store->append("queue", "not json");
    store->append("queue", "[3]");
    store->append("other", "4");
    EXPECT_EQ(count(), 3u);
    EXPECT_EQ(store->value("queue"), Value(Array{Dictionary{{"n", 1}}, "not json", Array{3}}));
    relaunch();

    EXPECT_EQ(reclaim().returned, 0u);
    EXPECT_EQ(store->value("queue"), Value(Array{Dictionary{{"n", 1}}, "not json", Array{3}}));
    EXPECT_THAT(jsonOf(take()), ElementsAre(R"({"n":1})", "not json", "[3]"));
    EXPECT_EQ(count(), 0u);
    EXPECT_THAT(take(), IsEmpty());
    EXPECT_EQ(count("other"), 1u);
}

TEST_P(DefaultsContract, ElementsInFlightComeBackFirstAndOthersAreForgottenOrDropped) {
    for (const char* json : {"1", "2", "3", "4", "5"}) store->append("queue", json);
    const auto taken = take();
    ASSERT_EQ(taken.size(), 5u);
    const auto beside = appendInFlight("6");
    const auto delivered = appendInFlight("7");
    ASSERT_TRUE(beside && delivered);
    EXPECT_EQ(count(), 0u);  // neither shows while it is in flight
    store->append("queue", "8");
    store->finish("queue", taken[1].id);
    store->finish("queue", *delivered);
    store->giveUp("queue", taken[2].id);
    requeue(taken[3].id);
    EXPECT_EQ(store->value("queue"), Value(Array{8, 4}));
    relaunch();

    EXPECT_EQ(count(), 2u);
    const auto reclaimed = reclaim();
    EXPECT_EQ(reclaimed.returned, 3u);
    EXPECT_THAT(reclaimed.dropped, ElementsAre("3"));
    store->append("queue", "9");
    EXPECT_THAT(jsonOf(take()), ElementsAre("1", "5", "6", "8", "4", "9"));
    relaunch();
    EXPECT_THAT(reclaim().dropped, IsEmpty());
}

TEST_P(DefaultsContract, IdsAreUniqueAlsoAcrossLaunches) {
    std::vector<platform::ElementId> ids;
    for (int launch = 0; launch < 2; ++launch) {
        store->append("queue", "1");
        store->append("other", "1");
        for (const char* key : {"queue", "other"}) {
            for (const auto& element : take(key)) {
                ids.push_back(element.id);
                store->finish(key, element.id);
            }
        }
        ids.push_back(appendInFlight("2").value_or(-1));
        relaunch();
    }
    EXPECT_EQ(ids.size(), 6u);
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(std::adjacent_find(ids.begin(), ids.end()), ids.end());
}

TEST_P(DefaultsContract, AnArrayThatWasSetIsTakenByElementAndASetReplacesElements) {
    store->set("queue", Array{Dictionary{{"a", 1}}, "text"});
    store->append("queue", "3");
    EXPECT_EQ(count(), 3u);
    const auto taken = take();
    EXPECT_THAT(jsonOf(taken), ElementsAre(R"({"a":1})", "\"text\"", "3"));

    store->append("queue", "4");
    store->set("queue", Array{5});
    EXPECT_EQ(store->value("queue"), Value(Array{5}));
    store->synchronize();
    relaunch();
    EXPECT_EQ(reclaim().returned, 3u);  // what is in flight is no part of the array that was replaced
    EXPECT_EQ(store->value("queue"), Value(Array{Dictionary{{"a", 1}}, "text", 3, 5}));

    store->set("queue", Value{});
    EXPECT_EQ(count(), 0u);
    EXPECT_TRUE(store->value("queue").isAbsent());
}

TEST_P(DefaultsContract, AValueThatIsNoArrayStaysUntilAnElementIsAppended) {
    const auto first = appendInFlight("1");
    ASSERT_TRUE(first);
    store->set("queue", "text");
    for (int launch = 0; launch < 2; ++launch) {
        EXPECT_EQ(count(), 0u);
        EXPECT_THAT(take(), IsEmpty());
        requeue(*first);
        EXPECT_EQ(reclaim().returned, 0u);
        EXPECT_EQ(store->value("queue"), Value("text"));
        store->synchronize();
        relaunch();
    }

    store->append("queue", "2");
    EXPECT_EQ(store->value("queue"), Value(Array{2}));
    store->set("queue", 7);
    ASSERT_TRUE(appendInFlight("3"));
    EXPECT_TRUE(store->value("queue").isAbsent());
    relaunch();
    EXPECT_TRUE(store->value("queue").isAbsent());
    EXPECT_EQ(reclaim().returned, 2u);
    EXPECT_THAT(jsonOf(take()), ElementsAre("1", "3"));
}

TEST_P(DefaultsContract, ErasedKeysAreGoneForGoodWithAllTheirElementsAndOthersStay) {
    store->set("secret", "a");
    store->set("kept", "b");
    store->synchronize();
    store->set("secret", "c");
    store->append("queue", "1");
    store->append("others", "2");
    ASSERT_TRUE(appendInFlight("3"));
    const auto problem = answerOf<std::string>([&](auto done) { store->erase({"secret", "queue"}, std::move(done)); });
    EXPECT_EQ(problem, "");
    EXPECT_THAT(store->keys(), testing::UnorderedElementsAre("kept", "others"));
    store->synchronize();

    relaunch();
    EXPECT_EQ(reclaim().returned, 0u);
    EXPECT_THAT(store->keys(), testing::UnorderedElementsAre("kept", "others"));
    store->append("queue", "4");
    EXPECT_EQ(take().size(), 1u);
}

TEST_P(DefaultsContract, OperationsOnElementsThatAreNotInFlightChangeNothing) {
    store->append("queue", "1");
    const auto taken = take();
    ASSERT_EQ(taken.size(), 1u);
    store->finish("queue", taken[0].id);
    requeue(taken[0].id);
    requeue(987'654'321);
    store->giveUp("queue", taken[0].id);
    store->finish("other", 987'654'321);
    EXPECT_EQ(count(), 0u);
    relaunch();
    const auto reclaimed = reclaim();
    EXPECT_EQ(reclaimed.returned, 0u);
    EXPECT_THAT(reclaimed.dropped, IsEmpty());
}

TEST_P(DefaultsContract, CompletionsKeepTheOrderOfTheirCallsAndMayCallTheStore) {
    defaults->suite("unread")->set("key", "kept");
    defaults->suite("unread")->synchronize();
    relaunch();
    Gathered<int> order;
    store->append("queue", "1");
    store->count("queue", [&](std::size_t) { order.add(1); });
    store->take("queue", [&](const std::vector<platform::StoredElement>& taken) {
        order.add(2);
        for (const auto& element : taken) store->finish("queue", element.id);
        store->set("seen", static_cast<std::int64_t>(taken.size()));
        EXPECT_EQ(defaults->suite("unread")->value("key"), Value("kept"));
        store->count("queue", [&](std::size_t) { order.add(9); });
    });
    store->reclaim("nothing", [&](const platform::ReclaimedElements&) { order.add(3); });
    ASSERT_TRUE(order.await(4));
    auto inOrder = order.all();
    std::erase(inOrder, 9);  // called by a completion, at a moment of its own
    EXPECT_THAT(inOrder, ElementsAre(1, 2, 3));
    EXPECT_EQ(store->value("seen"), Value(1));
}

TEST_P(DefaultsContract, ManyThreadsMayWorkOnOneStore) {
    std::vector<std::thread> workers;
    for (int worker = 0; worker < 4; ++worker) {
        workers.emplace_back([this, worker] {
            const auto name = "worker " + std::to_string(worker);
            for (int i = 0; i < 50; ++i) {
                store->append("queue", std::to_string(worker * 1000 + i));
                store->set(name, i);
                EXPECT_EQ(store->value(name), Value(i));
                if (i % 10 == 0) store->synchronize();
            }
        });
    }
    for (auto& worker : workers) worker.join();
    std::vector<int> next{0, 1000, 2000, 3000};
    for (const auto& json : jsonOf(take())) {
        const int number = std::stoi(json);
        EXPECT_EQ(number, next[static_cast<std::size_t>(number / 1000)]++);
    }
    EXPECT_THAT(next, ElementsAre(50, 1050, 2050, 3050));
}

}  // namespace orbinel::contract
