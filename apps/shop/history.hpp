#pragma once

#include <utility>
#include <vector>

#include "shop/model/product.hpp"
#include "shop/pages/page.hpp"

namespace shop {

/// Where the person is: a page, and whose where it is a product's.
struct Place {
    PageName page = PageName::home;
    const Product* product = nullptr;

    friend bool operator==(const Place&, const Place&) = default;
};

/// Where the person is, and where she came from.
class History {
public:
    [[nodiscard]] const Place& here() const { return here_; }

    /// Nothing is behind it.
    void begin(PageName page) {
        behind_.clear();
        here_ = {page, nullptr};
    }

    void goOn(const Place& place) { behind_.push_back(std::exchange(here_, place)); }

    /// False where nothing is behind.
    [[nodiscard]] bool goBack() {
        if (behind_.empty()) return false;
        here_ = behind_.back();
        behind_.pop_back();
        return true;
    }

private:
    Place here_;
    std::vector<Place> behind_;
};

}  // namespace shop
