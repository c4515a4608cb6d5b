#pragma once

#include "base/entrance.hpp"
#include "orbinel/library_part.hpp"

namespace orbinel {

/// One call from outside into a part of the world, which stands until the call has ended; nothing where that world does
/// not run.
template <typename Part>
class Visit {
public:
    explicit Visit(const LibraryPart<Part>& part) noexcept : entrance_(part.entrance) {
        if (entrance_ == nullptr) return;
        if (entrance_->enter(part.opening)) {
            part_ = part.part;
        } else {
            entrance_ = nullptr;
        }
    }

    /// The whole of what is behind the entrance now; it may be null.
    explicit Visit(Entrance* entrance) noexcept : entrance_(entrance) {
        if (entrance_ == nullptr) return;
        if (entrance_->enter(anyOpening)) {
            part_ = static_cast<Part*>(entrance_->target());
        } else {
            entrance_ = nullptr;
        }
    }

    ~Visit() {
        if (entrance_ != nullptr) entrance_->leave();
    }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

    explicit operator bool() const noexcept { return part_ != nullptr; }
    Part* operator->() const noexcept { return part_; }
    Part& operator*() const noexcept { return *part_; }

private:
    static constexpr std::uint64_t anyOpening = 0;

    Entrance* entrance_;
    Part* part_ = nullptr;
};

}  // namespace orbinel
