#include "shop/pages/privacy_page.hpp"

#include <utility>

#include "shop/widgets/ui.hpp"

namespace shop {

namespace {

GtkWidget* newGroup(GtkWidget* content, const char* title) {
    auto* rows = newColumn(0, {"card", "rows"});
    auto* group = newColumn(10);
    append(group, {newLabel(title, {"heading"}), rows});
    gtk_box_append(GTK_BOX(content), group);
    return rows;
}

GtkWidget* newSetting(const char* title, const char* text, GtkWidget* control) {
    auto* words = newColumn(2);
    append(words, {newText(title), newText(text, {"muted", "small"})});
    gtk_widget_set_hexpand(words, TRUE);
    gtk_widget_set_valign(control, GTK_ALIGN_CENTER);
    gtk_accessible_update_property(GTK_ACCESSIBLE(control), GTK_ACCESSIBLE_PROPERTY_LABEL, title, -1);
    auto* row = newRow(14, {"row"});
    append(row, {words, control});
    return row;
}

GtkWidget* newSwitch(const char* title, const char* text, bool on, std::function<void(bool)> switched) {
    auto* control = gtk_switch_new();
    gtk_switch_set_active(GTK_SWITCH(control), on);
    connect(control, "notify::active", [control, switched = std::move(switched)] {
        switched(gtk_switch_get_active(GTK_SWITCH(control)) != FALSE);
    });
    return newSetting(title, text, control);
}

}  // namespace

PrivacyPage::PrivacyPage(Shop& shop, Navigator& navigator) : shop_(shop), navigator_(navigator) {
    auto* content = newColumn(24);
    addConsents(content);
    addCollection(content);
    addMessages(content);
    addDeveloper(content);
    page_ = newScrolledPage(content, 640);
}

GtkWidget* PrivacyPage::newPreference(const char* title, const char* text, bool Preferences::*preference) {
    return newSwitch(title, text, shop_.preferences().*preference,
                     [this, preference](bool on) { shop_.setPreference(preference, on); });
}

void PrivacyPage::addConsents(GtkWidget* content) {
    append(newGroup(content, "Consent"),
           {newPreference("Use of my data", "Without it, nothing that you do here is told to anybody.",
                          &Preferences::consent),
            newPreference("Use of my data on this device", "The same, for this device alone.",
                          &Preferences::consentOnDevice)});
}

void PrivacyPage::addCollection(GtkWidget* content) {
    append(newGroup(content, "What may be collected"),
           {newPreference("Advertising identifier", "Off until you allow it.", &Preferences::collectAdvertisingId),
            newPreference("Network address", "Tells the country you are in.", &Preferences::collectIpAddress),
            newPreference("Location", "For offers near you.", &Preferences::collectLocation),
            newPreference("Network operator", "Of the device's mobile connection.", &Preferences::collectCarrier)});
}

void PrivacyPage::addMessages(GtkWidget* content) {
    append(newGroup(content, "Messages and appearance"),
           {newSwitch("Messages in the shop", "Banners and surveys over the pages.", true,
                      [this](bool on) { shop_.engagement.setMessagesWanted(on); }),
            newSetting("News on this device", "When a piece comes back into stock.",
                       newButton("Ask me", {"plain"},
                                 [this] {
                                     shop_.engagement.askForPushes();
                                     navigator_.say("The library has asked the system for permission.");
                                 })),
            newSwitch("Dark", "Easier on the eyes at night.", shop_.preferences().dark, [this](bool on) {
                shop_.setPreference(&Preferences::dark, on);
                g_object_set(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", on ? TRUE : FALSE,
                             nullptr);
            })});
}

void PrivacyPage::addDeveloper(GtkWidget* content) {
    append(newGroup(content, "For developers"),
           {newSwitch("Development log", "The library tells in the drawer what it does, and what it drops and why.",
                      false, [this](bool on) { shop_.engagement.setDevelopmentLog(on); }),
            newSetting("Test device", "As a link from the vendor's panel does it; from the next session on.",
                       newButton("Become one", {"plain"}, [this] {
                           shop_.engagement.becomeTestDevice();
                           navigator_.say("This is a test device from the next session on.");
                       }))});
}

}  // namespace shop
