#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "hosts/common/rapidjson_json.hpp"
#include "hosts/linux/sqlite_defaults.hpp"
#include "tests/linux/storage_child.hpp"
#include "tests/linux/temporary_directory.hpp"

// What holds between processes over one data directory, however they end.
namespace orbinel::hosts {

namespace {

class DefaultsProcesses : public testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<SqliteDefaults> open() const {
        return std::make_unique<SqliteDefaults>(directory.path(), std::make_shared<RapidJson>());
    }

    static platform::ReclaimedElements reclaim(SqliteDefaults& defaults) {
        platform::ReclaimedElements result;
        defaults.standard()->reclaim("queue", [&](platform::ReclaimedElements reclaimed) { result = reclaimed; });
        defaults.waitUntilWritten();
        return result;
    }

    static std::vector<platform::StoredElement> take(SqliteDefaults& defaults) {
        std::vector<platform::StoredElement> result;
        defaults.standard()->take("queue", [&](auto taken) { result = std::move(taken); });
        defaults.waitUntilWritten();
        return result;
    }

    TemporaryDirectory directory;
};

TEST_F(DefaultsProcesses, WhatWasCommittedSurvivesAKillAtAnyMoment) {
    std::mt19937 random(20260101);
    for (int round = 0; round < 12; ++round) {
        std::string lastCommitted;
        {
            StorageChild child("write", directory.path());
            for (auto lines = random() % 120 + 1; lines > 0; --lines) lastCommitted = child.readLine();
            child.kill();
        }
        const auto defaults = open();
        const auto store = defaults->standard();
        EXPECT_EQ(store->value("left"), store->value("right"));
        reclaim(*defaults);
        const auto taken = take(*defaults);
        ASSERT_GE(taken.size(), std::stoul(lastCommitted));
        for (std::size_t i = 0; i < taken.size(); ++i) {
            EXPECT_EQ(taken[i].json, std::to_string(i + 1));
            store->finish("queue", taken[i].id);
        }
    }
}

TEST_F(DefaultsProcesses, OnlyTheOwnerReclaimsAndGroupsAreReadFromTheFile) {
    StorageChild owner("own", directory.path());
    ASSERT_EQ(owner.readLine(), "ready");
    {
        const auto second = open();
        EXPECT_EQ(reclaim(*second).returned, 0u);
        EXPECT_TRUE(take(*second).empty());

        const auto group = second->appGroup("shared");
        EXPECT_EQ(group->value("greeting"), Value("first"));
        owner.writeLine();
        ASSERT_EQ(owner.readLine(), "changed");
        EXPECT_EQ(group->value("greeting"), Value("second"));
        group->set("greeting", "mine");
        EXPECT_EQ(group->value("greeting"), Value("mine"));
        EXPECT_THAT(group->keys(), testing::ElementsAre("greeting"));
    }
    owner.kill();
    EXPECT_EQ(reclaim(*open()).returned, 1u);
}

TEST_F(DefaultsProcesses, AnElementIsTakenByOneOfThemOnly) {
    { open()->standard()->append("queue", "1"); }
    const auto first = open();
    const auto second = open();
    first->waitUntilWritten();
    second->waitUntilWritten();
    EXPECT_EQ(take(*first).size() + take(*second).size(), 1u);
}

}  // namespace

}  // namespace orbinel::hosts
