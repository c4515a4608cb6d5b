#include "shop/pages/thanks_page.hpp"

#include "shop/check_box.hpp"
#include "shop/widgets/ui.hpp"

namespace shop {

namespace {

constexpr const char* ideas[] = {"A teapot for four", "Egg cups", "A butter dish with a lid that fits", "Soup plates"};

}  // namespace

ThanksPage::ThanksPage(Shop& shop, Navigator& navigator)
    : shop_(shop),
      navigator_(navigator),
      order_(newText("", {"muted"})),
      questions_(newColumn(4)),
      thanks_(newText("Noted. The wheel is turning already.", {"saving"})) {
    auto* content = newColumn(20);
    auto* head = newColumn(6);
    append(head, {newText("Thank you for your order", {"title"}), order_});
    append(content,
           {head, newSurvey(), newButton("Back to the shop", {"plain"}, [this] { navigator_.open(PageName::home); })});
    page_ = newScrolledPage(content, 560);
}

GtkWidget* ThanksPage::newSurvey() {
    for (const auto* idea : ideas) {
        choices_.emplace_back(idea, named(newCheckBox(idea), "idea-" + std::to_string(choices_.size())));
        gtk_box_append(GTK_BOX(questions_), choices_.back().second);
    }
    reply_ = newCheckBox("Write to me when it is there");
    gtk_widget_add_css_class(reply_, "apart");
    append(questions_, {reply_, named(newButton("Send", {"primary"}, [this] { send(); }), "send-survey")});
    auto* survey = newColumn(10, {"card", "form"});
    append(survey, {newText("What shall we make next?", {"heading"}), newText("Tick as many as you like.", {"muted"}),
                    questions_, thanks_});
    gtk_widget_set_visible(thanks_, FALSE);
    return survey;
}

void ThanksPage::setOrder(const std::string& saleId) {
    setText(order_, "Number " + saleId + ". We would be packing it now, if this were more than a demonstration.");
    for (const auto& [idea, box] : choices_) setChecked(box, false);
    setChecked(reply_, false);
    gtk_widget_set_visible(questions_, TRUE);
    gtk_widget_set_visible(thanks_, FALSE);
}

void ThanksPage::send() {
    std::vector<std::string> answers;
    for (const auto& [idea, box] : choices_) {
        if (isChecked(box)) answers.push_back(idea);
    }
    if (answers.empty()) return navigator_.say("Please tick at least one of them.");
    shop_.engagement.answeredSurvey(answers, isChecked(reply_));
    gtk_widget_set_visible(questions_, FALSE);
    gtk_widget_set_visible(thanks_, TRUE);
}

}  // namespace shop
