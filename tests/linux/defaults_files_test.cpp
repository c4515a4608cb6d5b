#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hosts/common/rapidjson_json.hpp"
#include "hosts/linux/sqlite_defaults.hpp"
#include "tests/linux/temporary_directory.hpp"
#include "tests/port_contract/contract_support.hpp"

// Stores whose files are damaged, in the way, or cannot be written at all.
namespace orbinel::hosts {

namespace {

using contract::Gathered;
using testing::ElementsAre;
using testing::HasSubstr;

/// Another process that is writing to the file.
class Locked {
public:
    explicit Locked(const std::filesystem::path& file)
        : database_(file, SqliteDatabase::Access::readWrite, 1000), transaction_(database_) {}

private:
    SqliteDatabase database_;
    SqliteTransaction transaction_;
};

/// SQLite is told that the process may open no further files. To be made and ended while no store is at work.
class NoDescriptors {
public:
    NoDescriptors() { replaceOpen(reinterpret_cast<sqlite3_syscall_ptr>(&fail)); }
    ~NoDescriptors() { replaceOpen(nullptr); }
    NoDescriptors(const NoDescriptors&) = delete;
    NoDescriptors& operator=(const NoDescriptors&) = delete;

private:
    static int fail(const char*, int, int) {
        errno = EMFILE;
        return -1;
    }

    static void replaceOpen(sqlite3_syscall_ptr function) {
        auto* const system = sqlite3_vfs_find(nullptr);
        EXPECT_EQ(system->xSetSystemCall(system, "open", function), SQLITE_OK);
    }
};

struct DefaultsFiles : testing::Test {
    void open() { open(directory.path()); }

    void open(const std::filesystem::path& where) {
        store.reset();
        defaults.reset();
        defaults = std::make_unique<SqliteDefaults>(where, std::make_shared<RapidJson>());
        store = defaults->standard();
    }

    void close() {
        store.reset();
        defaults.reset();
    }

    void write(const std::string& key, int number) {
        store->set(key, number);
        store->synchronize();
        store->append("queue", std::to_string(number));
        defaults->waitUntilWritten();
    }

    /// Sentences so far. The handler comes after the faults, as it does in the library.
    [[nodiscard]] std::vector<std::string> problems() {
        defaults->waitUntilWritten();
        defaults->setProblemHandler([this](std::string sentence) { sentences.add(std::move(sentence)); });
        defaults->setProblemHandler({});
        return sentences.takeAll();
    }

    [[nodiscard]] std::vector<platform::StoredElement> take() const {
        std::vector<platform::StoredElement> result;
        store->take("queue", [&](auto taken) { result = std::move(taken); });
        defaults->waitUntilWritten();
        return result;
    }

    [[nodiscard]] std::size_t reclaim() const {
        std::size_t returned = 0;
        store->reclaim("queue", [&](const auto& reclaimed) { returned = reclaimed.returned; });
        defaults->waitUntilWritten();
        return returned;
    }

    [[nodiscard]] static std::vector<std::string> jsonOf(const std::vector<platform::StoredElement>& elements) {
        std::vector<std::string> result;
        for (const auto& element : elements) result.push_back(element.json);
        return result;
    }

    /// In the test's directory, and beside it under a longer name. Nothing else is entered: it may vanish meanwhile.
    [[nodiscard]] std::size_t filesNamedLike(const std::string& part) const {
        using namespace std::filesystem;
        std::size_t count = 0;
        const auto look = [&](const directory_entry& entry) {
            if (entry.path().filename().string().find(part) != std::string::npos) ++count;
        };
        for (const auto& entry : directory_iterator(directory.path().parent_path())) {
            if (!entry.path().string().starts_with(directory.path().string())) continue;
            look(entry);
            if (!entry.is_directory()) continue;
            for (const auto& inner : recursive_directory_iterator(entry.path())) look(inner);
        }
        return count;
    }

    void expectAFreshStoreThatLasts() {
        EXPECT_TRUE(store->value("old").isAbsent());
        EXPECT_THAT(problems(), ElementsAre(HasSubstr("set aside")));
        EXPECT_GE(filesNamedLike("standard.sqlite.damaged-"), 1u);
        write("new", 2);
        open();
        EXPECT_EQ(store->value("new"), Value(2));
        EXPECT_EQ(store->value("queue"), Value(Array{2}));
        EXPECT_THAT(problems(), testing::IsEmpty());
    }

    TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "standard.sqlite";
    Gathered<std::string> sentences;
    std::unique_ptr<SqliteDefaults> defaults;
    std::shared_ptr<platform::DefaultsStore> store;
};

TEST_F(DefaultsFiles, WhatIsNoStoreIsSetAside) {
    const auto truncate = [this] {
        open();
        for (int i = 0; i < 200; ++i) store->set("filler " + std::to_string(i), std::string(500, 'f'));
        store->synchronize();
        write("old", 1);
        close();
        std::filesystem::resize_file(file, std::filesystem::file_size(file) / 2);
    };
    const std::vector<std::function<void()>> damages{
        truncate, [this] { std::ofstream(file) << std::string(5000, 'r'); },
        [this] { std::filesystem::create_directory(file); },
        [this] { std::filesystem::create_symlink(directory.path() / "missing" / "file", file); }};
    for (const auto& damage : damages) {
        damage();
        open();
        expectAFreshStoreThatLasts();
        close();
        for (const auto& entry : std::filesystem::directory_iterator(directory.path())) remove_all(entry.path());
    }
}

TEST_F(DefaultsFiles, ADiskThatGoesOnDamagingIsNotFilledWithWhatWasSetAside) {
    std::size_t most = 0;
    for (int i = 0; i < 20; ++i) {
        std::ofstream(file) << std::string(5000, 'r');
        open();
        write("key", i);
        close();
        most = std::max(most, filesNamedLike("standard.sqlite.damaged-"));
    }
    EXPECT_THAT(most, testing::AllOf(testing::Ge(3u), testing::Le(10u)));
}

TEST_F(DefaultsFiles, NobodyElseMayReadThem) {
    std::filesystem::permissions(directory.path(), std::filesystem::perms(0755));
    open();
    write("key", 1);
    close();
    std::filesystem::permissions(file, std::filesystem::perms(0644));  // as an earlier version made it
    open();
    write("key", 2);
    for (const auto& entry : std::filesystem::directory_iterator(directory.path())) {
        const auto others = std::filesystem::perms::group_all | std::filesystem::perms::others_all;
        EXPECT_EQ(entry.status().permissions() & others, std::filesystem::perms::none) << entry.path();
    }
}

TEST_F(DefaultsFiles, AnElementBeforeAllPositionsIsDamage) {
    open();
    write("old", 1);
    ASSERT_THAT(jsonOf(take()), ElementsAre("1"));
    close();
    SqliteDatabase(file, SqliteDatabase::Access::readWrite, 1000)
        .execute("UPDATE elements SET position = -9223372036854775807 - 1");
    open();
    EXPECT_EQ(reclaim(), 0u);
    expectAFreshStoreThatLasts();
}

TEST_F(DefaultsFiles, AShortageOfDescriptorsLeavesASoundFileWhereItIs) {
    open();
    write("key", 1);
    close();
    {
        const NoDescriptors none;
        open();
        EXPECT_TRUE(store->value("key").isAbsent());
        EXPECT_THAT(problems(), ElementsAre(HasSubstr("memory only")));
    }
    open();
    EXPECT_EQ(store->value("key"), Value(1));
    EXPECT_EQ(filesNamedLike("damaged"), 0u);
}

TEST_F(DefaultsFiles, WhileTheFileIsLockedNoElementIsLostAndNoLaunchAfterwardsSuffers) {
    open();
    store->append("queue", "1");
    store->append("queue", "2");
    const auto taken = take();
    ASSERT_THAT(jsonOf(taken), ElementsAre("1", "2"));
    {
        const Locked locked(file);
        store->requeue("queue", taken[1].id, [] {});
        defaults->waitUntilWritten();
    }
    EXPECT_THAT(jsonOf(take()), ElementsAre("2"));

    {
        close();
        const Locked locked(file);
        open();
        EXPECT_EQ(reclaim(), 2u);
    }
    store->append("queue", "3");  // of a launch that could not write down its number
    EXPECT_THAT(jsonOf(take()), ElementsAre("1", "2", "3"));
    EXPECT_THAT(problems(), ElementsAre(HasSubstr("could not be written to")));

    open();
    EXPECT_EQ(reclaim(), 3u);
    EXPECT_THAT(jsonOf(take()), ElementsAre("1", "2", "3"));
    EXPECT_THAT(problems(), testing::IsEmpty());
}

TEST_F(DefaultsFiles, DamageWhileInUseLosesNothingThatIsInMemory) {
    open();
    write("old", 1);
    // A second connection spoils the tables under the first one.
    SqliteDatabase(file, SqliteDatabase::Access::readWrite, 1000).execute("DROP TABLE elements");
    write("new", 2);
    EXPECT_THAT(problems(), ElementsAre(HasSubstr("set aside")));
    EXPECT_EQ(store->value("old"), Value(1));
    EXPECT_EQ(take().size(), 2u);
}

TEST_F(DefaultsFiles, WithoutAPlaceToWriteEverythingWorksInMemoryAndIsReportedOnce) {
    const auto blocked = directory.path() / "file" / "data";
    std::ofstream(directory.path() / "file") << "in the way";
    open(blocked);
    write("key", 1);
    write("key", 2);
    EXPECT_EQ(store->value("key"), Value(2));
    EXPECT_EQ(store->value("queue"), Value(Array{1, 2}));
    EXPECT_THAT(problems(), ElementsAre(HasSubstr("memory only")));

    std::optional<platform::ElementId> id = 1;
    store->appendInFlight("queue", "3", [&](auto answer) { id = answer; });
    const auto group = defaults->appGroup("group");
    group->set("key", 3);
    group->synchronize();
    defaults->waitUntilWritten();
    EXPECT_FALSE(id);
    EXPECT_EQ(group->value("key"), Value(3));
}

TEST_F(DefaultsFiles, StoresThatOutliveTheServiceGoOnInMemory) {
    open();
    const auto held = store;
    write("kept", 1);
    held->set("dropped", 1);
    close();
    held->set("later", 1);
    held->synchronize();
    EXPECT_EQ(held->value("kept"), Value(1));
    EXPECT_EQ(held->value("dropped"), Value(1));
    std::size_t counted = 0;
    held->append("queue", "2");
    held->count("queue", [&](std::size_t count) { counted = count; });
    EXPECT_EQ(counted, 2u);

    open();
    EXPECT_EQ(store->value("kept"), Value(1));
    EXPECT_TRUE(store->value("dropped").isAbsent());
    EXPECT_TRUE(store->value("later").isAbsent());
    EXPECT_EQ(store->value("queue"), Value(Array{1}));
}

TEST_F(DefaultsFiles, MayEndInsideACompletion) {
    open();
    auto slot = std::make_shared<std::unique_ptr<SqliteDefaults>>();
    Gathered<int> ended;
    const auto held = store;
    Gathered<int> handedOver;
    held->appendInFlight("queue", "1", [&, slot](auto) {
        ASSERT_TRUE(handedOver.await(1));
        slot->reset();
        held->count("queue", [&](std::size_t) { ended.add(1); });
    });
    *slot = std::move(defaults);
    handedOver.add(1);
    EXPECT_TRUE(ended.await(1));
}

TEST_F(DefaultsFiles, NamesStayWithinTheDirectory) {
    open(directory.path() / "inside");
    for (const char* name : {"../escaped", "/tmp/escaped", "..", "a\0b", "", "%2F", "escaped/../../escaped"}) {
        for (const auto& one : {defaults->suite(name), defaults->appGroup(name)}) {
            one->set("key", name);
            one->synchronize();
        }
    }
    const std::string longName(5000, 'x');
    defaults->suite(longName)->set("key", 1);
    defaults->suite(longName + "y")->set("key", 2);
    EXPECT_EQ(defaults->suite(longName)->value("key"), Value(1));
    EXPECT_THAT(problems(), testing::IsEmpty());
    close();
    for (const auto& entry : std::filesystem::directory_iterator(directory.path())) {
        EXPECT_EQ(entry.path().filename(), "inside");
    }
    EXPECT_EQ(filesNamedLike("escaped"), 6u);
}

TEST_F(DefaultsFiles, AHandlerThatWasReplacedRunsNoMoreAndMayReplaceItself) {
    std::ofstream(file) << std::string(5000, 'r');
    open();
    defaults->waitUntilWritten();
    defaults->setProblemHandler([this](std::string sentence) {
        sentences.add(std::move(sentence));
        defaults->setProblemHandler({});
    });
    std::ofstream(directory.path() / "suite-damaged.sqlite") << std::string(5000, 'r');
    static_cast<void>(defaults->suite("damaged")->value("key"));
    defaults->waitUntilWritten();
    EXPECT_EQ(sentences.size(), 1u);
    EXPECT_EQ(problems().size(), 2u);  // the first one again counted, the later one kept for the next handler
}

TEST_F(DefaultsFiles, AHandlerMayReadTheStoreThatItHearsOf) {
    open();
    Gathered<bool> absent;
    defaults->setProblemHandler(
        [&](const std::string&) { absent.add(defaults->suite("damaged")->value("key").isAbsent()); });
    std::ofstream(directory.path() / "suite-damaged.sqlite") << std::string(5000, 'r');
    static_cast<void>(defaults->suite("damaged"));
    ASSERT_TRUE(absent.await(1));
    defaults->setProblemHandler({});
    EXPECT_TRUE(absent.all().front());
}

}  // namespace

}  // namespace orbinel::hosts
