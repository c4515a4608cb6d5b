#include "guide.hpp"

using orbinel::Orbinel;
using orbinel::OrbinelIdentifiers;

namespace guide {

void describeUser() {
    auto user = Orbinel::getCurrentUser();
    user.setName("Ada").setEmail("ada@example.org").setEmailOptin(true);
    user.setCustomAttributeWithString("tier", "gold").setCustomAttributeWithInt("orders", 3);
    user.unsetCustomAttribute("trial");
}

void logIn() {
    auto user = Orbinel::getCurrentUser();
    const auto identifiers = OrbinelIdentifiers().addEmail("ada@example.org").addUserID("42");
    user.login(identifiers, [user](const std::string&) mutable {
        user.setCustomAttributeWithString("tier", "gold");  // what is set before belongs to the person before
    });
}

void logOut() { Orbinel::getCurrentUser().logout(); }

}  // namespace guide
