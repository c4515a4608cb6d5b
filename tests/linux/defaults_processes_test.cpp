#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "hosts/common/rapidjson_json.hpp"
#include "hosts/linux/sqlite_defaults.hpp"
#include "support/child_process.hpp"
#include "tests/linux/temporary_directory.hpp"

// What holds between processes over one data directory, however they end.
namespace orbinel::hosts {

namespace {

using test::ChildProcess;
using test::say;

constexpr std::string_view childArgument = "--storage-child";

void waitForLine() {
    char byte = 0;
    while (::read(STDIN_FILENO, &byte, 1) == 1 && byte != '\n') {
    }
}

/// Works until it is killed, and says of each element that it is committed.
void writeForEver(SqliteDefaults& defaults) {
    const auto store = defaults.standard();
    for (int number = 1;; ++number) {
        store->set("left", number);
        store->set("right", number);
        store->synchronize();
        store->appendInFlight("queue", std::to_string(number), [number](std::optional<platform::ElementId> id) {
            if (id) say(std::to_string(number));
        });
        if (number % 50 == 0) defaults.waitUntilWritten();  // keeps the line of jobs short
    }
}

/// Owns the directory until it is let go.
void own(SqliteDefaults& defaults) {
    const auto group = defaults.appGroup("shared");
    defaults.standard()->appendInFlight("queue", "1", [](auto) {});
    group->set("greeting", "first");
    group->synchronize();
    defaults.waitUntilWritten();
    say("ready");
    waitForLine();
    group->set("greeting", "second");
    group->synchronize();
    defaults.waitUntilWritten();
    say("changed");
    waitForLine();
}

int runChild(std::string_view role, const char* directory) {
    SqliteDefaults defaults(directory, std::make_shared<RapidJson>());
    if (role == "write") writeForEver(defaults);
    if (role == "own") own(defaults);
    return 0;
}

/// This program once more, over the same data directory, in one of the roles above.
struct StorageChild : ChildProcess {
    StorageChild(const std::string& role, const std::filesystem::path& directory)
        : ChildProcess({std::string(childArgument), role, directory.string()}) {}

    std::string nextLine() {
        std::string line;
        readLine(line);
        return line;
    }
};

struct DefaultsProcesses : testing::Test {
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
            for (auto lines = random() % 120 + 1; lines > 0; --lines) lastCommitted = child.nextLine();
            child.kill();
            child.waitForEnd();
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
    ASSERT_EQ(owner.nextLine(), "ready");
    {
        const auto second = open();
        EXPECT_EQ(reclaim(*second).returned, 0u);
        EXPECT_TRUE(take(*second).empty());

        const auto group = second->appGroup("shared");
        EXPECT_EQ(group->value("greeting"), Value("first"));
        ASSERT_TRUE(owner.writeLine());
        ASSERT_EQ(owner.nextLine(), "changed");
        EXPECT_EQ(group->value("greeting"), Value("second"));
        group->set("greeting", "mine");
        EXPECT_EQ(group->value("greeting"), Value("mine"));
        group->synchronize();
        second->waitUntilWritten();
        EXPECT_EQ(group->value("greeting"), Value("mine"));  // though it was read before
        EXPECT_THAT(group->keys(), testing::ElementsAre("greeting"));
    }
    owner.kill();
    owner.waitForEnd();
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

int main(int argumentCount, char** arguments) {
    if (argumentCount == 4 && arguments[1] == orbinel::hosts::childArgument) {
        return orbinel::hosts::runChild(arguments[2], arguments[3]);
    }
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
