#include "guide.hpp"

using orbinel::Orbinel;

namespace guide {

void reportShopping() {
    auto shoe = Orbinel::createNewProductWithID("shoe-1", "Running shoe", {"Sport", "Shoes"},
                                                "https://shop.example/shoe-1.jpg", 59.9, "EUR");
    shoe.setColor("red").setStock(12);

    Orbinel::visitProductDetailPageWithProduct(shoe);
    Orbinel::itemAddedToWishlistWithProduct(shoe);
    Orbinel::itemAddedToCartWithProduct(shoe);
    Orbinel::visitCartPageWithProducts({shoe});

    shoe.setQuantity(2).setSalePrice(49.9);
    Orbinel::itemPurchasedWithSaleID("sale-7", shoe);  // once for each product of the sale
    Orbinel::cartCleared();
}

}  // namespace guide
