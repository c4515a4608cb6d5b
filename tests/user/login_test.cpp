#include "user/user_library_test.hpp"

namespace orbinel::testing {
namespace {

class LoginTest : public UserLibraryTest {
protected:
    LoginTest() { host.defaults->standard()->set(keys::orbinelId, "id-1"); }

    void logIn(const OrbinelIdentifiers& who) {
        user().login(who, [this](const std::string& id) { results.push_back(id); });
    }
    void answerIdentity(Scripted answer) { backend.answer(path, std::move(answer)); }
    std::vector<Received> asked() const { return backend.received(path); }
    OrbinelIdentifiers ada() { return identifiers().addUserID("ada").addCustomIdentifier("loyalty", "7"); }

    static constexpr const char* path = "/api/identity/v3/get";
    const Dictionary adaStored{{"uuid", "ada"}, {"c_loyalty", "7"}};
    std::vector<std::string> results;
};

TEST_F(LoginTest, IdentifiersTakeOnlyWhatIsValid) {
    auto ids = identifiers();
    ids.addEmail("a@b").addEmail(nullptr).addPhoneNumber("+0123").addUserID("").addCustomIdentifier("", "x");
    ids.addCustomIdentifier("key", "").addCustomIdentifier("Key", "");
    EXPECT_THAT(sinks.feeds("isNameValid"), IsEmpty());
    ids.addCustomIdentifier("Key", "x");
    EXPECT_THAT(sinks.feeds("isNameValid"), SizeIs(1));
    EXPECT_THAT(ids.getOrbinelIdentifiers(), IsEmpty());

    auto copy = ids;
    copy.addEmail("a@b.c").addPhoneNumber("+4912").addUserID("u").addUserID("v").addCustomIdentifier("key", "x");
    EXPECT_EQ(copy.getOrbinelIdentifiers(),
              (Dictionary{{"em", "a@b.c"}, {"pn", "+4912"}, {"uuid", "v"}, {"c_key", "x"}}));
    EXPECT_THAT(ids.getOrbinelIdentifiers(), IsEmpty());
    const auto withoutLibrary =
        OrbinelIdentifiers(LibraryPart<const UserAccess>()).addCustomIdentifier("Key", "x").addUserID("u");
    EXPECT_EQ(withoutLibrary.getOrbinelIdentifiers(), (Dictionary{{"uuid", "u"}}));

    logIn(ids);
    host.settle();
    EXPECT_FALSE(user().areIdentifiersAlreadyCached(ids));
    EXPECT_THAT(backend.paths(), IsEmpty());
    EXPECT_THAT(results, IsEmpty());
}

TEST_F(LoginTest, ADifferentPersonGetsASessionOfTheirOwn) {
    becomeActive();
    user().setName("before");
    backend.clear();
    answerIdentity({.body = "id-2"});
    logIn(ada().addEmail("ada@example.org"));
    host.settle();

    EXPECT_THAT(backend.paths(), ElementsAre(path, "/api/v3/session/stop", "/api/v3/session/start"));
    auto identifiersSent = adaStored;
    identifiersSent.set("em", "ada@example.org");
    EXPECT_EQ(asked()[0].payload,
              (Dictionary{
                  {"partner", "acme"}, {"identifiers", identifiersSent}, {"platform", "iOS"}, {"orbinel_id", "id-1"}}));
    const auto old = backend.stops().at(0).payload;
    EXPECT_EQ(old["orbinel_id"], "id-1");
    EXPECT_EQ(old["user_attributes"], (Dictionary{{"na", "before"}, {"mls", false}}));
    EXPECT_EQ(backend.starts().at(0).payload["orbinel_id"], "id-2");
    EXPECT_THAT(results, ElementsAre("id-2"));
    EXPECT_EQ(removedInapps, 1);
    EXPECT_THAT(sinks.messages({"Login", "In-app messages", "Saved", "Send stop payload success"}),
                ElementsAre("Login requested.", "In-app messages disabled and removed.", "Send stop payload success.",
                            "Login success.", "Saved orbinel id."));
    EXPECT_FALSE(sinks.feeds("orbinelIdentifierRequestJSON").at(0).shouldFeed);
    EXPECT_EQ(sinks.feeds("setUserIdentifier").at(0).data, identifiersSent);
    EXPECT_EQ(sinks.feeds("setUserIdentifierSuccess").at(0).data, (Dictionary{{"orbinelID", "id-2"}}));

    enterBackground();
    const auto fresh = backend.stops().at(1).payload;
    EXPECT_EQ(fresh["user_attributes"], (Dictionary{{"mls", true}, {"uuid", "ada"}, {"em", "ada@example.org"}}));
}

TEST_F(LoginTest, TheSamePersonKeepsTheSessionAndIsAskedForOnce) {
    becomeActive();
    backend.clear();
    answerIdentity({.body = "id-1"});
    logIn(ada());
    host.settle();
    EXPECT_THAT(backend.paths(), ElementsAre(path));
    EXPECT_THAT(results, ElementsAre("id-1"));
    EXPECT_EQ(stored(keys::userIdentifiers), adaStored);
    EXPECT_EQ(attributes()["mls"], true);
    EXPECT_TRUE(user().areIdentifiersAlreadyCached(ada()));

    logIn(ada());
    EXPECT_THAT(results, ElementsAre("id-1", "id-1"));  // at once
    world().identity.setRetryIdentityRequestStatus(true);
    logIn(ada());
    world().identity.setRetryIdentityRequestStatus(false);
    world().helper.setSessionGdprConsent(false);
    logIn(identifiers().addUserID("bob"));
    host.settle();
    EXPECT_THAT(results, SizeIs(2));
    EXPECT_THAT(asked(), SizeIs(1));

    user().logout();
    EXPECT_FALSE(user().areIdentifiersAlreadyCached(ada()));
    EXPECT_EQ(attributes()["mls"], false);
    EXPECT_EQ(stored(keys::orbinelId), "id-1");
    host.settle();
    EXPECT_THAT(asked(), SizeIs(1));
}

// Without an ID nothing is lost: the next activation asks again, before its session starts.
TEST_F(LoginTest, AnAnswerWithoutAnIdIsAskedForAgainAtTheNextActivation) {
    const Scripted none{.status = 204, .body = std::nullopt};
    for (const auto& answer : {Scripted{}, Scripted{.body = "[1]"}, Scripted{.body = ""}, Scripted{.body = "id\xFF"},
                               none, Scripted{.status = 500}, Scripted{.status = std::nullopt}}) {
        world().identity.setRetryIdentityRequestStatus(false);
        world().identity.unsetUserIdentifiers();
        answerIdentity(answer);
        logIn(ada());
        host.settle();
        EXPECT_EQ(stored(keys::retryIdentityRequest), true);
        EXPECT_EQ(stored(keys::userIdentifiers), adaStored);
        EXPECT_EQ(stored(keys::orbinelId), "id-1");
        EXPECT_THAT(world().identity.getIdentifiersForStopPayload(), IsEmpty());
    }
    EXPECT_THAT(results, IsEmpty());

    relaunchWithUser();
    answerIdentity({.body = "id-2"});
    backend.clear();
    becomeActive();
    EXPECT_THAT(backend.paths(), ElementsAre(path, "/api/v3/session/start"));
    EXPECT_EQ(asked()[0].payload["identifiers"], adaStored);
    EXPECT_EQ(backend.starts()[0].payload["orbinel_id"], "id-2");
    EXPECT_EQ(stored(keys::retryIdentityRequest), false);
    EXPECT_EQ(sinks.count("Getting correct orbinelId for logged in user."), 1U);
}

TEST_F(LoginTest, AnInvalidIdIsLeftOutAndResolvedAgainForNobodyInParticular) {
    host.defaults->standard()->set(keys::orbinelId, "-bad");
    answerIdentity({.body = "id-3"});
    becomeActive();
    ASSERT_THAT(asked(), SizeIs(1));
    EXPECT_EQ(asked()[0].payload,
              (Dictionary{{"partner", "acme"}, {"identifiers", Dictionary{}}, {"platform", "iOS"}}));
    EXPECT_EQ(sinks.count("Won't add invalid orbinel id to identity request."), 1U);
    EXPECT_EQ(sinks.count("Getting brand new orbinlId for logged out user."), 1U);
    EXPECT_EQ(backend.starts().at(0).payload["orbinel_id"], "id-3");
    EXPECT_EQ(attributes()["mls"], true);
    EXPECT_THAT(sinks.feeds("setUserIdentifier"), IsEmpty());
}

// What is stored is hostile until checked: it must not keep a session from starting.
TEST_F(LoginTest, BrokenStoredIdentifiersAreLeftOut) {
    for (const Value& broken : {Value(Dictionary{{"em", 7}, {"when", Date{1}}, {"uuid", "ada"}}), Value("x")}) {
        host.defaults->standard()->set(keys::userIdentifiers, broken);
        world().identity.setRetryIdentityRequestStatus(true);
        runSession([] {});
    }
    ASSERT_THAT(asked(), SizeIs(2));
    EXPECT_EQ(asked()[0].payload["identifiers"], (Dictionary{{"uuid", "ada"}}));
    EXPECT_EQ(asked()[1].payload["identifiers"], Dictionary());
    EXPECT_THAT(backend.starts(), SizeIs(2));
    answerIdentity({.body = std::string(1 << 20, 'x')});
    logIn(ada());
    host.settle();
    EXPECT_THAT(results, SizeIs(1));
}

TEST_F(LoginTest, ALoginIsNeitherLostNorRepeatedWhenTheApplicationLeavesMeanwhile) {
    becomeActive();
    backend.clear();
    answerIdentity({.body = "id-2"});
    logIn(ada());
    enterBackground();
    EXPECT_EQ(stored(keys::orbinelId), "id-2");
    EXPECT_EQ(stored(keys::userIdentifiers), adaStored);
    runSession([] {});
    EXPECT_THAT(asked(), SizeIs(1));
    EXPECT_THAT(results, ElementsAre("id-2"));
    std::vector<Value> statuses;
    for (const auto& stop : backend.stops()) {
        const auto* told = stop.payload["user_attributes"].ifDictionary();
        if (told != nullptr && told->contains("mls")) statuses.push_back((*told)["mls"]);
    }
    EXPECT_THAT(statuses, ElementsAre(false, true));
    EXPECT_EQ(backend.stops().back().payload["orbinel_id"], "id-2");
}

// The last thing that the person did holds, whatever is answered when.
TEST_F(LoginTest, ALateAnswerUndoesNothingThatBeganAfterIt) {
    becomeActive();
    answerIdentity({.body = "id-2"});
    logIn(ada());
    user().logout();
    host.settle();
    EXPECT_THAT(results, IsEmpty());
    EXPECT_TRUE(stored(keys::userIdentifiers).isAbsent());
    EXPECT_EQ(attributes()["mls"], false);

    backend.answerOnce(path, {.body = "id-3"});
    backend.answerOnce(path, {.body = "id-4"});
    logIn(ada());
    logIn(identifiers().addUserID("bob"));
    host.settle();
    EXPECT_EQ(stored(keys::orbinelId), asked().back().payload["identifiers"] == adaStored ? "id-3" : "id-4");
    EXPECT_EQ(stored(keys::userIdentifiers), (Dictionary{{"uuid", "bob"}}));

    int completions = 0;
    world().identity.resetOrbinelIdWithCompletionBlock([&] { ++completions; });
    user().logout();
    host.settle();
    EXPECT_EQ(completions, 1);
    EXPECT_EQ(attributes()["mls"], false);
}

// Nothing of a session leaves the device once a consent is withdrawn, and the login is not lost either.
TEST_F(LoginTest, WaitsForTheConsentThatWasWithdrawnBeforeItsAnswer) {
    becomeActive();
    backend.clear();
    answerIdentity({.body = "id-2"});
    logIn(ada());
    Orbinel::setGDPRConsent(false);
    host.settle();
    EXPECT_THAT(asked(), SizeIs(1));
    EXPECT_THAT(backend.stops(), IsEmpty());
    EXPECT_THAT(backend.starts(), IsEmpty());
    EXPECT_EQ(queuedStops(), 0U);
    EXPECT_EQ(stored(keys::orbinelId), "id-1");
    EXPECT_EQ(stored(keys::userIdentifiers), adaStored);
    EXPECT_EQ(stored(keys::retryIdentityRequest), true);
    EXPECT_EQ(removedInapps, 0);

    enterBackground();
    Orbinel::setGDPRConsent(true);
    host.settle();
    backend.clear();
    becomeActive();
    ASSERT_THAT(backend.paths(), ElementsAre(path, "/api/v3/session/start"));
    EXPECT_EQ(asked()[0].payload["identifiers"], adaStored);
    EXPECT_EQ(backend.starts()[0].payload["orbinel_id"], "id-2");
    EXPECT_EQ(stored(keys::retryIdentityRequest), false);
    EXPECT_THAT(results, IsEmpty());
}

TEST_F(LoginTest, OpensNoSessionWhenAConsentIsWithdrawnWhileTheOldOneCloses) {
    becomeActive();
    backend.clear();
    answerIdentity({.body = "id-2"});
    backend.answer("/session/stop", {.never = true});
    logIn(ada());
    host.settle();
    ASSERT_THAT(backend.paths(), ElementsAre(path, "/api/v3/session/stop"));
    Orbinel::setMobileGDPRConsent(false);
    host.advance(60);  // the stop's time is up
    EXPECT_EQ(queuedStops(), 1U);
    EXPECT_EQ(stored(keys::orbinelId), "id-2");
    EXPECT_THAT(backend.starts(), IsEmpty());
    EXPECT_THAT(results, IsEmpty());
}

TEST_F(LoginTest, ALibraryThatEndsMeanwhileCallsNobody) {
    becomeActive();
    answerIdentity({.body = "id-2"});
    logIn(ada());
    shutdown();
    host.settle();
    EXPECT_THAT(results, IsEmpty());
    EXPECT_EQ(stored(keys::orbinelId), "id-1");
}

}  // namespace
}  // namespace orbinel::testing
