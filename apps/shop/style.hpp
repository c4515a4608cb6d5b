#pragma once

namespace shop {

/// Gives all windows the shop's looks, light or dark as GTK's setting says from then on.
void installStyle(bool dark);

}  // namespace shop
