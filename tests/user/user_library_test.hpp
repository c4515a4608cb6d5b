#pragma once

#include <memory>

#include "orbinel/user.hpp"
#include "support/library_test.hpp"
#include "user/login.hpp"
#include "user/user_access.hpp"

namespace orbinel::testing {

/// A started library with a user. Its message on screen only counts how often it was removed.
class UserLibraryTest : public LibraryTest, protected DisplayedInapp {
protected:
    UserLibraryTest() { makeUser(); }
    ~UserLibraryTest() override { shutdown(); }  // before the message goes

    void makeUser() {
        initialise();
        world().login.displayedInapp.unbind();
        world().login.displayedInapp.bind(*this);
        access = world().part(std::as_const(world().userAccess));
    }
    void relaunchWithUser() {
        relaunch();
        makeUser();
    }
    void removeInappWithCompletionHandler(Completion completion) override {
        ++removedInapps;
        completion();
    }

    OrbinelUser user() { return OrbinelUser(access); }
    OrbinelIdentifiers identifiers() { return OrbinelIdentifiers(access); }
    Dictionary attributes() { return world().userAttributes.getUserAttributes(); }
    Dictionary customAttributes() { return world().userAttributes.getCustomAttributes(); }

    LibraryPart<const UserAccess> access;
    int removedInapps = 0;
};

}  // namespace orbinel::testing
