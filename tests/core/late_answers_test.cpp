#include <algorithm>

#include "base/mutex.hpp"
#include "platform/forwarding_http.hpp"
#include "support/library_test.hpp"

// What comes back late must not touch what has begun since: another session, another partner, another person, or a
// consent that was withdrawn.
namespace orbinel::testing {
namespace {

/// Keeps back the answers of chosen requests until a test delivers them.
class LateHttp final : public platform::ForwardingHttp {
public:
    using ForwardingHttp::ForwardingHttp;

    /// Keeps back the answer to each of the next `count` requests to a URL that ends in `path`.
    void keepBack(const std::string& path, int count = 1) {
        const MutexLock lock(mutex_);
        paths_.insert(paths_.end(), static_cast<std::size_t>(count), path);
    }

    /// Delivers one of the answers kept back, counted from the one that came first.
    void deliver(std::ptrdiff_t place) {
        auto kept = [&] {
            const MutexLock lock(mutex_);
            auto chosen = std::move(kept_.at(static_cast<std::size_t>(place)));
            kept_.erase(kept_.begin() + place);
            return chosen;
        }();
        kept.completion(std::move(kept.outcome));
    }

    platform::Ticket send(platform::HttpRequest request, platform::HttpCompletion completion) noexcept override {
        if (!take(request.url)) return target_->send(std::move(request), std::move(completion));
        return target_->send(std::move(request), [this, completion](platform::HttpOutcome outcome) {
            const MutexLock lock(mutex_);
            kept_.push_back({completion, std::move(outcome)});
        });
    }

private:
    struct Kept {
        platform::HttpCompletion completion;
        platform::HttpOutcome outcome;
    };

    bool take(const std::string& url) {
        const MutexLock lock(mutex_);
        const auto path =
            std::find_if(paths_.begin(), paths_.end(), [&](const auto& one) { return url.ends_with(one); });
        if (path == paths_.end()) return false;
        paths_.erase(path);
        return true;
    }

    Mutex mutex_;
    std::vector<std::string> paths_ ORBINEL_GUARDED_BY(mutex_);
    std::vector<Kept> kept_ ORBINEL_GUARDED_BY(mutex_);
};

struct LateAnswersTest : LibraryTest {
    LateAnswersTest() {
        relaunch([this](platform::Services& services) {
            late = std::make_shared<LateHttp>(services.http);
            services.http = late;
        });
        host.defaults->standard()->set(keys::orbinelId, "id-1");
        initialise();
    }
    void deliver(std::ptrdiff_t place = 0) {
        late->deliver(place);
        host.settle();
    }
    void logIn(const char* userId) {
        Orbinel::getCurrentUser().login(OrbinelIdentifiers().addUserID(userId),
                                        [this](const std::string& id) { results.push_back(id); });
        host.settle();
    }
    void queueOneStop() {
        backend.answerOnce(stopPath, {.status = 503});
        runSession([] {});
        ASSERT_EQ(queuedStops(), 1U);
        backend.clear();
    }

    static constexpr const char* startPath = "/session/start";
    static constexpr const char* stopPath = "/session/stop";
    static constexpr const char* identityPath = "/identity/v3/get";
    std::shared_ptr<LateHttp> late;
    std::vector<std::string> results;
};

TEST_F(LateAnswersTest, AStartIsAnsweredForItsOwnSessionOnly) {
    const std::vector<std::function<void()>> changes{
        [this] {
            enterBackground();
            becomeActive();
        },
        [this] {
            Orbinel::reinitWithPartnerName("globex");
            host.settle();
        },
        [this] {
            backend.answerOnce(identityPath, {.body = "id-ada"});
            logIn("ada");
        },
    };
    for (const auto& change : changes) {
        late->keepBack(startPath);
        backend.answerOnce(startPath, {.body = R"({"session_id": "old", "new_id": "old-person", "sdk_disabled": true,
            "inapps": [{"inapp_id": 7, "trigger": "seen"}]})"});
        becomeActive();
        backend.answerOnce(startPath, {.body = R"({"session_id": "new"})"});
        change();
        deliver();
        EXPECT_EQ(record().session_id, "new");
        EXPECT_THAT(record().received_inapps, IsEmpty());
        EXPECT_NE(stored(keys::orbinelId), "old-person");
        EXPECT_FALSE(world().helper.sdkDisabled());
        EXPECT_THAT(eventNames(), ElementsAre("session_start"));
        enterBackground();
    }
    EXPECT_THAT(results, ElementsAre("id-ada"));
}

TEST_F(LateAnswersTest, NothingLeavesOnceAConsentIsWithdrawn) {
    queueOneStop();
    const auto withdraw = [] { Orbinel::setGDPRConsent(false); };
    const auto giveAgain = [this] {
        enterBackground();
        Orbinel::setGDPRConsent(true);
        host.settle();
        backend.clear();
    };

    // While queued stops are sent before the start.
    backend.answerOnce(stopPath, {.status = 503});
    late->keepBack(stopPath);
    becomeActive();
    withdraw();
    deliver();
    EXPECT_THAT(backend.starts(), IsEmpty());
    giveAgain();

    // While a partner switch closes the old session; the new name is adopted all the same.
    becomeActive();
    backend.clear();
    late->keepBack(stopPath);
    Orbinel::reinitWithPartnerName("globex");
    host.settle();
    withdraw();
    deliver();
    EXPECT_EQ(world().session.partnerName(), "globex");
    EXPECT_THAT(backend.starts(), IsEmpty());
    EXPECT_THAT(backend.received(identityPath), IsEmpty());
    giveAgain();

    // Before the queue is tried again after a switch.
    becomeActive();
    backend.answerOnce(stopPath, {.status = 503});
    Orbinel::reinitWithPartnerName("acme");
    host.settle();
    ASSERT_EQ(queuedStops(), 1U);
    withdraw();
    host.settle();
    backend.clear();
    host.advance(30);
    EXPECT_THAT(backend.stops(), IsEmpty());
    EXPECT_EQ(queuedStops(), 1U);
}

TEST_F(LateAnswersTest, NoSessionStartsInTheBackground) {
    queueOneStop();
    late->keepBack(stopPath);
    becomeActive();  // the queued stop is under way
    enterBackground();
    deliver();
    EXPECT_THAT(backend.starts(), IsEmpty());

    becomeActive();
    late->keepBack(stopPath);
    Orbinel::reinitWithPartnerName("globex");
    host.settle();
    enterBackground();
    backend.clear();
    deliver();
    EXPECT_THAT(backend.starts(), IsEmpty());
    becomeActive();
    ASSERT_THAT(backend.starts(), SizeIs(1));
    EXPECT_EQ(backend.starts()[0].payload["partner_name"], "globex");

    backend.answerOnce(identityPath, {.body = "id-ada"});
    late->keepBack(stopPath);
    logIn("ada");
    enterBackground();
    backend.clear();
    deliver();
    EXPECT_THAT(backend.starts(), IsEmpty());
    EXPECT_THAT(results, ElementsAre("id-ada"));
}

TEST_F(LateAnswersTest, OfTwoPartnerSwitchesTheLaterOnePrevails) {
    becomeActive();
    for (const auto* later : {"initech", "initech"}) {  // the second time back to the one in force
        late->keepBack(stopPath);
        Orbinel::reinitWithPartnerName("globex");
        host.settle();
        Orbinel::reinitWithPartnerName("globex");  // it is under way
        Orbinel::reinitWithPartnerName(later);
        host.settle();
        deliver();
        EXPECT_EQ(world().session.partnerName(), later);
        EXPECT_EQ(backend.starts().back().payload["partner_name"], later);
    }
    EXPECT_EQ(sinks.count("Reinit returned. Partner name is the same."), 2U);
}

TEST_F(LateAnswersTest, AnIdOfThePartnerBeforeIsLeft) {
    world().identity.removeCachedOrbinelID();
    late->keepBack(identityPath);
    backend.answerOnce(identityPath, {.body = "of-acme"});
    becomeActive();  // without an ID, it asks for one
    backend.answerOnce(identityPath, {.body = "of-globex"});
    Orbinel::reinitWithPartnerName("globex");
    host.settle();
    EXPECT_EQ(stored(keys::orbinelId), "of-globex");
    deliver();
    EXPECT_EQ(stored(keys::orbinelId), "of-globex");
}

TEST_F(LateAnswersTest, ALoginIsNeverUndoneByAnIdThatTheLibraryAskedForItself) {
    for (const bool loginIsAnsweredFirst : {false, true}) {
        results.clear();
        world().identity.unsetUserIdentifiers();
        world().identity.removeCachedOrbinelID();
        late->keepBack(identityPath, 2);
        backend.answerOnce(identityPath, {.body = "person"});
        backend.answerOnce(identityPath, {.body = "anonymous"});
        logIn("ada");
        becomeActive();  // without an ID, it asks for one for nobody in particular
        ASSERT_THAT(backend.received(identityPath), SizeIs(2));
        deliver(loginIsAnsweredFirst ? 0 : 1);
        deliver();
        EXPECT_THAT(results, ElementsAre("person"));
        EXPECT_EQ(stored(keys::orbinelId), "person");
        EXPECT_EQ(stored(keys::userIdentifiers), (Dictionary{{"uuid", "ada"}}));
        enterBackground();
        backend.clear();
    }
}

}  // namespace
}  // namespace orbinel::testing
