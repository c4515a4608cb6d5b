#pragma once

#include <cstdint>

namespace orbinel {

class Entrance;

/// What an application's object holds of the running library: a part of it, as long as the library runs. It keeps
/// nothing in memory, costs nothing to copy, and leads nowhere before the start and after the end.
template <typename Part>
struct LibraryPart {
    Part* part = nullptr;  // only to be followed by a visit
    Entrance* entrance = nullptr;
    std::uint64_t opening = 0;  // the library that the part belongs to
};

}  // namespace orbinel
