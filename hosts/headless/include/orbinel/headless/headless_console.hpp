#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "orbinel/export.hpp"
#include "orbinel/platform/console.hpp"

namespace orbinel::headless {

/// Keeps what was written to it, or hands it on.
class ORBINEL_API HeadlessConsole final : public platform::Console {
public:
    using Reader = std::function<void(std::string_view line)>;

    /// Keeps the lines.
    HeadlessConsole();

    /// Hands each line to the reader, which may be called from several threads at once, and keeps none.
    explicit HeadlessConsole(Reader reader);

    ~HeadlessConsole() override;

    [[nodiscard]] std::vector<std::string> lines() const;
    void clear();

    void writeLine(std::string_view line) noexcept override;

private:
    struct State;

    const std::unique_ptr<State> state_;
};

}  // namespace orbinel::headless
