#include "guide.hpp"

using orbinel::Orbinel;

namespace guide {

void reportEvents() {
    Orbinel::tagEvent("article_read")
        .addParameterWithString("section", "sport")
        .addParameterWithInt("minutes", 4)
        .addParameterWithBoolean("to_the_end", true)
        .build();

    auto search = Orbinel::tagEvent("search");
    search.addParameterWithString("words", "running shoe");
    search.build();
    search.addParameterWithInt("results", 12);  // sent, too, while the session is open

    Orbinel::signUpConfirmation();
}

}  // namespace guide
