#pragma once

namespace orbinel {

class World;

/// Ends the world, has everything erased that the library keeps, and puts a new world over the same services in its
/// place, which knows nothing of the old one.
///
/// Nothing is erased before the old world is gone, so that nothing can write after it. Returns at once; erasing goes on
/// on the global queue and ends on the main queue.
void replaceByErasedWorld(World& world);

}  // namespace orbinel
