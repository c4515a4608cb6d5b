#include "commerce/page_visits.hpp"

#include <string>

#include "commerce/product_codes.hpp"

namespace orbinel {

namespace {

constexpr std::string_view HOMEPAGE_VIEW = "homepage_view";
constexpr std::string_view LISTING_PAGE_VIEW = "listing_page_view";
constexpr std::string_view PRODUCT_PAGE_VIEW = "product_detail_page_view";
constexpr std::string_view CART_PAGE_VIEW = "cart_page_view";

}  // namespace

void OrbinelPageVisit::visitHomepage() noexcept {
    events_.throughGate("+[OrbinelPageVisit visitHomepage]", [&] {
        events_.tag(HOMEPAGE_VIEW);
        events_.feed("visitHomepage");
    });
}

void OrbinelPageVisit::visitListingPage(const Array& taxonomy) noexcept {
    events_.throughGate("+[OrbinelPageVisit visitListingPage:]", [&] {
        if (taxonomy.empty()) return;
        const Dictionary listed{{std::string(product_code::TAXONOMY), taxonomy}};
        events_.tag(LISTING_PAGE_VIEW, listed);
        events_.feed("visitListingPage", [&] { return listed; });
    });
}

void OrbinelPageVisit::visitProductDetailPage(const OrbinelProduct& product) noexcept {
    events_.throughGate("+[OrbinelPageVisit visitProductDetailPage:]", [&] {
        if (!product.isProductValid()) return;
        events_.tag(PRODUCT_PAGE_VIEW, product.getProductSummary());
        events_.feed("visitProductDetailPage", [&] { return Dictionary{{"value", product.getProductID()}}; });
    });
}

void OrbinelPageVisit::visitCartPage(const std::vector<OrbinelProduct>& products) noexcept {
    events_.throughGate("+[OrbinelPageVisit visitCartPage:]", [&] {
        events_.tagEachValid(products, CART_PAGE_VIEW, "visitCartPage;");  // the wizard knows it with the semicolon
    });
}

}  // namespace orbinel
