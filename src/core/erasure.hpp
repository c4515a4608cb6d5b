#pragma once

#include "core/current_world.hpp"

namespace orbinel {

/// Ends the current world, has everything erased that the library keeps, and puts a new world over the same services in
/// its place, which knows nothing of the old one. Does nothing without a world.
///
/// Nothing is erased before the old world is gone, so that nothing can write after it. Returns at once; erasing goes on
/// on the global queue and ends on the main queue, where `erased` is told. Where there is no memory to begin, the world
/// stays, and `erased` is told that.
void eraseStoredData(current_world::Erased erased) noexcept;

}  // namespace orbinel
