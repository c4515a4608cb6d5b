#include "guide.hpp"

using orbinel::Orbinel;
using orbinel::OrbinelIdentifiers;
using orbinel::OrbinelVariableTypeContent;

namespace guide {

bool useWhatThereIs() {
    auto user = Orbinel::getCurrentUser();
    user.login(OrbinelIdentifiers().addEmail("ada@acme.com"), [user](const std::string&) mutable {
        user.setName("Ada").setCustomAttributeWithString("tier", "gold");  // set before, it is of the person before
    });
    const auto image = "https://shop.example/shoe-1.jpg";
    const auto shoe = Orbinel::createNewProductWithID("shoe-1", "Running shoe", {"Sport", "Shoes"}, image, 59.9, "EUR");
    Orbinel::itemAddedToCartWithProduct(shoe);
    const bool sale = Orbinel::getContentBoolWithName("summer_sale", false, OrbinelVariableTypeContent);
    return sale;
}

}  // namespace guide
