#pragma once

#include <memory>

namespace orbinel {

class Entrance;
class World;

/// The world that the static facade works on: the library's one global. Threads: any.
namespace current_world {

/// Where calls from outside enter the world; nothing while the library is not started. Costs one atomic read.
[[nodiscard]] Entrance* entrance() noexcept;

/// The world, kept alive for the caller; nothing while the library is not started.
[[nodiscard]] std::shared_ptr<World> get() noexcept;

/// Claims the place for a world that is about to be made; false where there is one already, or somebody else is making
/// one. Whoever has claimed it has to `set` it, with nothing where the making failed.
[[nodiscard]] bool claim() noexcept;
void set(std::shared_ptr<World> world) noexcept;

/// Takes the world out of its place.
[[nodiscard]] std::shared_ptr<World> take() noexcept;

}  // namespace current_world
}  // namespace orbinel
