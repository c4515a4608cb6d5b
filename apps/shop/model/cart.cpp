#include "shop/model/cart.hpp"

#include <algorithm>
#include <numeric>

namespace shop {

std::vector<CartLine>::iterator Cart::lineOf(std::string_view productId) {
    return std::find_if(lines_.begin(), lines_.end(),
                        [productId](const CartLine& line) { return line.product->id == productId; });
}

bool Cart::add(std::string_view productId, int count) {
    const auto* product = catalogue_.find(productId);
    const auto line = lineOf(productId);
    const int before = line != lines_.end() ? line->quantity : 0;
    if (product == nullptr || count < 1 || count > mostOfOne - before) return false;
    if (line != lines_.end()) {
        line->quantity += count;
    } else {
        lines_.push_back({product, count});
    }
    changes.tell();
    return true;
}

void Cart::setQuantity(std::string_view productId, int quantity) {
    const auto line = lineOf(productId);
    if (line == lines_.end()) return;
    line->quantity = std::clamp(quantity, 1, mostOfOne);
    changes.tell();
}

void Cart::remove(std::string_view productId) {
    const auto line = lineOf(productId);
    if (line == lines_.end()) return;
    lines_.erase(line);
    changes.tell();
}

void Cart::clear() {
    lines_.clear();
    changes.tell();
}

int Cart::itemCount() const {
    return std::accumulate(lines_.begin(), lines_.end(), 0,
                           [](int sum, const CartLine& line) { return sum + line.quantity; });
}

CartTotals Cart::totals(const Terms& terms) const {
    CartTotals totals;
    for (const auto& [product, quantity] : lines_) {
        totals.goods = totals.goods + terms.priceOf(*product) * quantity;
        totals.saved = totals.saved + (product->price - terms.priceOf(*product)) * quantity;
    }
    const bool costs = !lines_.empty() && totals.goods < terms.freeDeliveryFrom;
    if (costs) totals.delivery = Terms::delivery;
    if (costs) totals.untilFreeDelivery = terms.freeDeliveryFrom - totals.goods;
    totals.total = totals.goods + totals.delivery;
    return totals;
}

}  // namespace shop
