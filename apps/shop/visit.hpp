#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "shop/shop.hpp"
#include "shop/shop_window.hpp"

namespace shop {

/// A scripted visit: what a person would press, one after the other, with a picture of every page.
///
/// What does not happen in time is told on stderr, and the visit goes on.
class Visit {
public:
    Visit(ShopWindow& window, Shop& shop, std::filesystem::path pictures);

    /// At the next turn of the main loop, which it keeps turning; `done` afterwards.
    void begin(Action done);

    /// 0, or 1 where something did not happen.
    [[nodiscard]] int exitStatus() const { return failed_ ? 1 : 0; }

private:
    void play();
    void arrive();
    void chooseOnPhone();
    void followMessage();
    void logInOnPhone();
    void buyOnPhone();
    void answerOurSurvey();
    void lookAround();
    void visitOnDesktop();

    void resize(int width, int height);
    void press(const std::string& name);
    void type(const std::string& name, const std::string& text);
    void picture(const std::string& name);
    void waitFor(const std::string& what, const std::function<bool()>& condition);
    void awaitMessage(int count);
    void runInMessage(const std::string& script);
    void clickInMessage(const std::string& selector);
    [[nodiscard]] GtkWidget* root() const { return GTK_WIDGET(window_.get()); }
    [[nodiscard]] GtkWidget* find(const std::string& name);
    void fail(const std::string& sentence);

    ShopWindow& window_;
    Shop& shop_;
    const std::filesystem::path pictures_;
    int number_ = 0;  // of the last picture
    bool failed_ = false;
    Action done_;
};

}  // namespace shop
