#include "guide.hpp"

using orbinel::Orbinel;
using orbinel::OrbinelVariableTypeContent;

namespace guide {

std::string titleOfHomePage() {
    const bool sale = Orbinel::getContentBoolWithName("summer_sale", false, OrbinelVariableTypeContent);
    if (!sale) return "Welcome";
    return Orbinel::getContentStringWithName("sale_title", "Summer sale", OrbinelVariableTypeContent);
}

}  // namespace guide
