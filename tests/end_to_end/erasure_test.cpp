#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>

#include "hosts/linux/sqlite_database.hpp"
#include "orbinel/headless/headless_console.hpp"
#include "platform/forwarding_defaults.hpp"
#include "tests/end_to_end/linux_library.hpp"
#include "tests/linux/temporary_directory.hpp"

// Once a person has asked for it, no byte on the disk tells who they are.
namespace orbinel::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::Optional;

constexpr const char* email = "ada@acme.com";
constexpr const char* phone = "+441632960001";
constexpr const char* token = "00ff11ee22dd33cc";

class Erasure : public ::testing::Test {
protected:
    void SetUp() override {
        backend.answer([](const std::string& path, httplib::Response& response) {
            const auto start =
                R"({"content_variables": [], "smart_recommendations": {"1": "http://acme.test/for-ada-only"}})";
            response.set_content(path == startPath      ? start
                                 : path == identityPath ? "person-of-the-test"
                                                        : "",
                                 "application/json");
            if (path == stopPath) response.status = 503;  // so that stops wait in the queue
            return response.status != 503;
        });
        library.emplace(directory.path(), backend.origin);
        library->services.console = std::make_shared<headless::HeadlessConsole>();
        ASSERT_NO_FATAL_FAILURE(library->launch());
        ASSERT_NO_FATAL_FAILURE(useAsAPerson(1));
        ASSERT_NO_FATAL_FAILURE(useAsAPerson(2));
        ASSERT_TRUE(library->runUntilQuiet());
        std::ofstream(directory.path() / "standard.sqlite.damaged-1") << email;
        library->services.secureItems->store(keys::udidKeychain, keys::udidKeychain, "of-an-earlier-installation");
        std::ofstream(directory.path() / "secure" / "ORBINEL_UDID_KEYCHAIN+ORBINEL_UDID_KEYCHAIN.Ab3dEf")
            << "half-written";
        secrets = {udid(), vendorIdentifier(), "person-of-the-test",         email,         phone,
                   token,  "for-ada-only",     "of-an-earlier-installation", "half-written"};
        for (const auto& secret : secrets) ASSERT_THAT(filesWith(secret), Not(IsEmpty())) << secret;
    }

    void useAsAPerson(int number) {
        Orbinel::setPushToken(token);
        const auto starts = library->network->starts.load();
        library->becomeActive();
        ASSERT_TRUE(library->runUntil([&] { return library->network->starts > starts; }));
        library->host->runMainQueue();  // where the answer is taken in
        Orbinel::getCurrentUser().setEmail(email).setPhoneNumber(phone).login(OrbinelIdentifiers().addEmail(email));
        ASSERT_TRUE(library->runUntilQuiet());
        Orbinel::tagEvent("seen").addParameterWithInt("number", number).build();
        const auto stops = library->network->stops.load();
        library->enterBackground();
        ASSERT_TRUE(library->runUntil([&] { return library->network->stops > stops; }));
    }

    /// The sentence that the completion is given.
    std::optional<std::string> erase() {
        std::optional<std::string> problem;
        bool over = false;
        Orbinel::eraseStoredDataWithCompletionHandler([&](const auto& sentence) {
            EXPECT_TRUE(library->services.scheduler->isMain());
            problem = sentence;
            over = true;
        });
        EXPECT_TRUE(library->runUntil([&] { return over; }));
        return problem;
    }

    std::string udid() const { return library->services.defaults->standard()->value(keys::udidCache).stringOrEmpty(); }
    std::string vendorIdentifier() const {
        return library->services.device->facts()->vendorIdentifier.value_or(std::string());
    }

    /// Every file below the data directory that holds the text anywhere, logs of databases included.
    std::vector<std::string> filesWith(const std::string& text) const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(directory.path())) {
            if (!entry.is_regular_file()) continue;
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string content{std::istreambuf_iterator<char>(file), {}};
            if (content.find(text) != std::string::npos) names.push_back(entry.path().filename());
        }
        return names;
    }

    void expectNothingLeft() const {
        for (const auto& secret : secrets) EXPECT_THAT(filesWith(secret), IsEmpty()) << secret;
        auto& defaults = *library->services.defaults;
        EXPECT_THAT(defaults.suite(keys::contentSuite)->keys(), IsEmpty());
        EXPECT_THAT(defaults.appGroup("group.acme")->keys(), ElementsAre("application's own"));
        EXPECT_THAT(defaults.standard()->keys(), IsEmpty());
    }

    std::vector<std::string> consoleLinesWith(const std::string& text) const {
        std::vector<std::string> lines;
        for (auto& line : dynamic_cast<headless::HeadlessConsole&>(*library->services.console).lines()) {
            if (line.find(text) != std::string::npos) lines.push_back(line);
        }
        return lines;
    }

    hosts::TemporaryDirectory directory;
    LoopbackBackend backend;
    std::optional<LinuxLibrary> library;
    std::vector<std::string> secrets;
};

TEST_F(Erasure, DuringASessionLeavesNothingAndTheNextIsThatOfANewDevice) {
    const auto group = library->services.defaults->appGroup("group.acme");
    group->set("application's own", 1);
    group->synchronize();
    library->becomeActive();
    ASSERT_TRUE(library->runUntilQuiet());
    auto user = Orbinel::getCurrentUser();
    user.setEmail(email);

    EXPECT_EQ(erase(), std::nullopt);
    expectNothingLeft();
    user.setEmail(email);  // of a library that is no more
    backend.forget();
    Orbinel::initWithLaunchOptions(std::nullopt, "acme", "group.acme", backend.origin);
    library->becomeActive();
    const auto starts = library->network->starts.load();
    ASSERT_TRUE(library->runUntil([&] { return library->network->starts > starts; }));
    ASSERT_TRUE(library->runUntilQuiet());

    EXPECT_THAT(udid(), Not(::testing::AnyOf("", secrets.front())));
    for (const auto& arrival : backend.arrivals()) {
        EXPECT_NE(arrival.path, stopPath);
        EXPECT_TRUE(arrival.path != startPath || arrival.payload["udid"] == Value(udid()));
    }
    for (const auto& secret : {udid(), vendorIdentifier()}) EXPECT_THAT(secrets, Not(::testing::Contains(secret)));
    EXPECT_THAT(filesWith(email), IsEmpty());
}

TEST_F(Erasure, NeedsNoInitialisationAndIsDoneOnceForAllWhoAskMeanwhile) {
    shutdown();
    Orbinel::eraseStoredDataWithCompletionHandler([](const auto&) { ADD_FAILURE() << "there is no library"; });
    ASSERT_TRUE(start(library->services));
    int over = 0;
    for (int call = 0; call < 2; ++call) {
        Orbinel::eraseStoredDataWithCompletionHandler([&](const auto& problem) {
            EXPECT_EQ(problem, std::nullopt);
            ++over;
        });
    }
    EXPECT_FALSE(start(library->services));
    ASSERT_TRUE(library->runUntil([&] { return over == 2; }));
    for (const auto& secret : secrets) EXPECT_THAT(filesWith(secret), IsEmpty()) << secret;
    EXPECT_EQ(erase(), std::nullopt);  // again, with nothing there
}

TEST_F(Erasure, IsFinishedAlsoWhereTheLibraryIsShutDownMeanwhile) {
    bool over = false;
    Orbinel::eraseStoredDataWithCompletionHandler([&](const auto&) { over = true; });
    shutdown();
    EXPECT_FALSE(start(library->services));  // it would use what is being erased
    ASSERT_TRUE(library->runUntil([&] { return over; }));
    for (const auto& secret : secrets) EXPECT_THAT(filesWith(secret), IsEmpty()) << secret;
    EXPECT_TRUE(start(library->services));
}

/// Shuts the library down while it is being made.
class EndingDefaults final : public platform::ForwardingDefaults {
public:
    using ForwardingDefaults::ForwardingDefaults;
    void setProblemHandler(std::function<void(std::string)> handler) noexcept override {
        target_->setProblemHandler(std::move(handler));
        if (std::exchange(ends, false)) shutdown();
    }
    bool ends = false;
};

TEST_F(Erasure, LeavesTheLibraryEndedAlsoWhereItIsShutDownWhileItIsMadeAnew) {
    shutdown();
    const auto defaults = std::make_shared<EndingDefaults>(library->services.defaults);
    auto services = library->services;
    services.defaults = defaults;
    ASSERT_TRUE(start(services));
    defaults->ends = true;
    EXPECT_EQ(erase(), std::nullopt);
    EXPECT_FALSE(defaults->ends);
    EXPECT_TRUE(start(library->services));
}

TEST_F(Erasure, WhatCannotBeWrittenIsToldInOneSentenceAndCanBeErasedLater) {
    Orbinel::setDevelopmentLog(true);
    {
        hosts::SqliteDatabase another(directory.path() / "standard.sqlite", hosts::SqliteDatabase::Access::readWrite,
                                      1000);
        const hosts::SqliteTransaction writing(another);
        EXPECT_THAT(erase(), Optional(HasSubstr("\"standard.sqlite\" could not be erased (database is locked)")));
    }
    EXPECT_EQ(consoleLinesWith("could not be erased").size(), 1u);
    EXPECT_EQ(library->services.defaults->standard()->value(keys::udidCache), Value());
    EXPECT_EQ(erase(), std::nullopt);
    for (const auto& secret : secrets) EXPECT_THAT(filesWith(secret), IsEmpty()) << secret;
}

}  // namespace

}  // namespace orbinel::testing
