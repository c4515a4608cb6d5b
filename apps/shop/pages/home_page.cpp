#include "shop/pages/home_page.hpp"

#include <algorithm>

#include "shop/widgets/product_card.hpp"
#include "shop/widgets/product_picture.hpp"
#include "shop/widgets/ui.hpp"

namespace shop {

namespace {

constexpr int mostWidth = 1080;

GtkWidget* newShelf() {
    auto* shelf = gtk_flow_box_new();
    auto* box = GTK_FLOW_BOX(shelf);
    gtk_flow_box_set_selection_mode(box, GTK_SELECTION_NONE);
    gtk_flow_box_set_homogeneous(box, TRUE);
    gtk_flow_box_set_min_children_per_line(box, 2);
    gtk_flow_box_set_max_children_per_line(box, 5);
    gtk_flow_box_set_row_spacing(box, 12);
    gtk_flow_box_set_column_spacing(box, 12);
    gtk_widget_add_css_class(shelf, "shelf");
    return shelf;
}

std::string lowerCase(const std::string& text) {
    const std::unique_ptr<char, decltype(&g_free)> lower(g_utf8_strdown(text.c_str(), -1), &g_free);
    return lower.get();
}

}  // namespace

HomePage::HomePage(Shop& shop, Navigator& navigator)
    : shop_(shop),
      navigator_(navigator),
      strip_(shop, navigator, "Popular now",
             [this](const Product& product) {
                 shop_.engagement.choseRecommended(product, false, shop_.terms());
                 navigator_.openProduct(product);
             }),
      chipRow_(newRow(8)),
      shelf_(newShelf()),
      heroPictures_(newRow(8)) {
    addChip("Everything", "");
    for (const auto& category : shop_.catalogue.categories()) addChip(category, category);
    auto* chips = gtk_scrolled_window_new();
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(chips), GTK_POLICY_EXTERNAL, GTK_POLICY_NEVER);
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(chips), chipRow_);
    auto* content = newColumn(20);
    append(content, {newHero(), strip_.widget(), newLabel("The collection", {"heading"}), chips, shelf_});
    page_ = newScrolledPage(content, mostWidth);
    shop_.termsChanged.follow([this] {
        showTerms();
        showProducts();
    });
    shop_.wishlist.changes.follow([this] {
        if (gtk_widget_get_mapped(page_) == FALSE) showProducts();
    });
    showTerms();
    showProducts();
}

GtkWidget* HomePage::newHero() {
    heroTitle_ = newText("", {"hero-title"});
    heroText_ = newText("", {"hero-text"});
    offer_ = named(newButton("See today's offer", {"hero-button"}, [this] { shop_.engagement.sawOffer(); }), "offer");
    gtk_widget_set_halign(offer_, GTK_ALIGN_START);
    auto* words = newColumn(10);
    append(words, {heroTitle_, heroText_, offer_});
    gtk_widget_set_hexpand(words, TRUE);
    gtk_widget_set_valign(words, GTK_ALIGN_CENTER);
    for (const auto* id : {"vase-tall", "kettle-stone", "mug-red"}) {
        const auto* product = shop_.catalogue.find(id);
        if (product != nullptr) gtk_box_append(GTK_BOX(heroPictures_), newProductDrawing(*product, 110));
    }
    gtk_widget_set_valign(heroPictures_, GTK_ALIGN_END);
    hero_ = newRow(24, {"hero"});
    append(hero_, {words, heroPictures_});
    return hero_;
}

void HomePage::addChip(const std::string& text, const std::string& category) {
    auto* chip = newButton(text, {"chip"}, [this, category] {
        showCategory(category);
        if (!category.empty()) shop_.engagement.sawCategory(category);
    });
    chips_.emplace_back(category, chip);
    gtk_box_append(GTK_BOX(chipRow_), chip);
}

void HomePage::shown() { shop_.engagement.sawHome(); }

void HomePage::setWide(bool wide) {
    setClass(hero_, "wide", wide);
    gtk_widget_set_visible(heroPictures_, wide);
}

void HomePage::showCategory(const std::string& category) {
    const auto found = std::find_if(chips_.begin(), chips_.end(),
                                    [&](const auto& chip) { return lowerCase(chip.first) == lowerCase(category); });
    category_ = found != chips_.end() ? found->first : std::string();
    showProducts();
}

void HomePage::recommend() {
    shop_.engagement.recommendPopular([this](const auto& ids) { strip_.show(ids); });
}

void HomePage::showTerms() {
    const auto& terms = shop_.terms();
    setText(heroTitle_, terms.title);
    setText(heroText_, terms.saleIsOn ? "The sale is on: a fifth off the pieces marked in red, as long as they last."
                                      : "Made by hand, fired twice, new every week.");
    gtk_widget_set_visible(offer_, terms.saleIsOn);
}

void HomePage::showProducts() {
    for (const auto& [category, chip] : chips_) setClass(chip, "chosen", category == category_);
    while (auto* child = gtk_widget_get_first_child(shelf_)) gtk_flow_box_remove(GTK_FLOW_BOX(shelf_), child);
    for (const auto& product : shop_.catalogue.products()) {
        if (!category_.empty() && product.taxonomy.front() != category_) continue;
        auto* card =
            newProductCard(product, shop_, navigator_, 2, [this, &product] { navigator_.openProduct(product); });
        gtk_flow_box_insert(GTK_FLOW_BOX(shelf_), card, -1);
        gtk_widget_set_focusable(gtk_widget_get_parent(card), FALSE);  // the buttons in it have the focus
    }
}

}  // namespace shop
