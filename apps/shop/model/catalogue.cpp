#include "shop/model/catalogue.hpp"

#include <algorithm>
#include <iterator>

namespace shop {

namespace {

const Product everything[] = {
    {"mug-blue",
     "Blue mug",
     {"Kitchen", "Mugs"},
     {950},
     true,
     "Thrown by hand and dipped twice, so that the glaze runs a little differently on each. Holds 300 ml and may "
     "go into the dishwasher.",
     Motif::mug,
     "#2f6f8f",
     "#dcebf0"},
    {"bowl-white",
     "White bowl",
     {"Kitchen", "Bowls"},
     {1400},
     false,
     "Wide enough for a salad for one, deep enough for soup. The foot is left unglazed and feels like fine sand.",
     Motif::bowl,
     "#f4efe6",
     "#d9cfc0"},
    {"lamp-desk",
     "Desk lamp",
     {"Lights", "Lamps"},
     {4990},
     true,
     "A ceramic shade on a steel arm. The inside is glazed white and throws a warm, even light on the table.",
     Motif::lamp,
     "#d9692f",
     "#fbeadf"},
    {"kettle-stone",
     "Stoneware kettle",
     {"Kitchen", "Tea"},
     {2950},
     false,
     "Keeps a litre of tea warm for an hour. The handle stays cool, the lid stays on when you pour.",
     Motif::kettle,
     "#6d665f",
     "#e7e2db"},
    {"mug-red",
     "Red mug",
     {"Kitchen", "Mugs"},
     {950},
     true,
     "The blue one's sister, in iron red. Holds 300 ml and may go into the dishwasher.",
     Motif::mug,
     "#a43d17",
     "#f6e0d6"},
    {"plate-moss",
     "Dinner plate with a moss green rim",
     {"Table", "Plates"},
     {1850},
     false,
     "Twenty-seven centimetres, stackable, with a rim that catches the sauce.",
     Motif::plate,
     "#6f8553",
     "#e6ebdc"},
    {"jug-milk",
     "Milk jug",
     {"Table", "Jugs"},
     {1200},
     false,
     "Pours without a drop on the cloth: we made forty spouts before this one.",
     Motif::jug,
     "#f0c48a",
     "#fbf0df"},
    {"pot-sugar",
     "Sugar pot",
     {"Table", "Tea"},
     {800},
     false,
     "With a notch for the spoon in its lid. Goes with the kettle and the milk jug.",
     Motif::pot,
     "#2f6f73",
     "#d8e9e8"},
    {"candle-holder",
     "Candle holder",
     {"Lights", "Candles"},
     {1650},
     true,
     "Heavy, low and stable; takes the usual household candles.",
     Motif::candle,
     "#8f5d7a",
     "#f1e2ea"},
    {"vase-tall",
     "Tall vase",
     {"Home", "Vases"},
     {3600},
     false,
     "For three long stems rather than a bunch. Glazed on the inside, so that it holds water for weeks.",
     Motif::vase,
     "#3d4f6b",
     "#dfe4ec"},
    {"planter-round",
     "Round planter",
     {"Home", "Planters"},
     {2200},
     true,
     "With a hole and a saucer, because roots do not like to stand in water.",
     Motif::planter,
     "#c07f52",
     "#f5e6da"},
    {"bowl-breakfast",
     "Breakfast bowl",
     {"Kitchen", "Bowls"},
     {1400},
     false,
     "Half a litre for porridge, fruit or coffee the old way.",
     Motif::bowl,
     "#d9692f",
     "#fbeadf"},
};

}  // namespace

Catalogue::Catalogue() : products_(std::begin(everything), std::end(everything)) {}

const Product* Catalogue::find(std::string_view id) const {
    const auto found =
        std::find_if(products_.begin(), products_.end(), [id](const Product& product) { return product.id == id; });
    return found != products_.end() ? &*found : nullptr;
}

std::vector<std::string> Catalogue::categories() const {
    std::vector<std::string> names;
    for (const auto& product : products_) {
        const auto& name = product.taxonomy.front();
        if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    }
    return names;
}

}  // namespace shop
