#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orbinel {

class Entrance;
class World;

/// The world that the static facade works on: the library's one global. Threads: any.
namespace current_world {

/// Where calls from outside enter the world; nothing while the library is not started. Costs one atomic read.
[[nodiscard]] Entrance* entrance() noexcept;

/// The world, kept alive for the caller; nothing while the library is not started.
[[nodiscard]] std::shared_ptr<World> get() noexcept;

/// Claims the place for a world that is about to be made; or why not: there is one already, or somebody else is making
/// one. Whoever has claimed it has to `set` it, with nothing where the making failed.
enum class Claim { granted, started, erasing };
[[nodiscard]] Claim claim() noexcept;
void set(std::shared_ptr<World> world) noexcept;

/// Takes the world out of its place. Where one is being erased, none comes after it.
[[nodiscard]] std::shared_ptr<World> take() noexcept;

/// Told when an erasure is over: nothing, or what could not be erased.
using Erased = std::function<void(const std::optional<std::string>& problem)>;

/// Takes the world out of its place and claims the place for the world that comes after the erasure. Nothing where
/// there is no world; while an erasure is under way, `erased` waits for that one. Throws where there is no memory; then
/// nothing has happened, and `erased` is still the caller's.
[[nodiscard]] std::shared_ptr<World> beginErasure(Erased&& erased);

/// Whether a world is to come after the erasure; asked before it is made.
[[nodiscard]] bool continuesAfterErasure() noexcept;

/// Puts the world (or nothing) in its place, unless the library has been shut down meanwhile; who waits for the end of
/// the erasure.
[[nodiscard]] std::vector<Erased> endErasure(std::shared_ptr<World> world) noexcept;

}  // namespace current_world
}  // namespace orbinel
