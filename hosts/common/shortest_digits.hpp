#pragma once

#include <cstddef>
#include <cstdint>

namespace orbinel::hosts {

/// The fewest digits that read back as the same number, as JSON writes them. The number is finite.
class ShortestDigits {
public:
    explicit ShortestDigits(double number) noexcept;

    [[nodiscard]] const char* data() const noexcept { return begin_; }
    [[nodiscard]] std::size_t size() const noexcept { return size_; }

private:
    [[nodiscard]] bool writeShortDecimal(double number) noexcept;
    void write(std::int64_t whole, int places, std::int64_t power) noexcept;

    char begin_[32];  // a double needs 24 at most
    std::size_t size_ = 0;
};

}  // namespace orbinel::hosts
