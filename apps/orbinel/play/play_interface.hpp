#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "apps/orbinel/play/played_page.hpp"
#include "orbinel/platform/views.hpp"
#include "orbinel/value.hpp"

namespace orbinel::tool {

/// Lets the play go on until the condition holds; false when the limit (real time) comes first.
using PlayWait = std::function<bool(const std::function<bool()>& condition, std::chrono::milliseconds limit)>;

/// The interface in which a play shows its messages. What cannot be carried out throws `NotCarriedOut`.
///
/// Threads: main.
class PlayInterface {
public:
    virtual ~PlayInterface() = default;

    [[nodiscard]] virtual std::shared_ptr<platform::Views> views() const = 0;
    [[nodiscard]] virtual PlayedPage& page() = 0;
    virtual void setKeyboardOpen(bool open) = 0;

    /// Lets the interface do what is due, for a few milliseconds at most.
    virtual void iterate() = 0;

    /// How long the play may wait before it has to iterate again.
    [[nodiscard]] virtual std::chrono::milliseconds longestWait() const = 0;

    /// The value of a script's expression in the page that is shown.
    [[nodiscard]] virtual Value evaluate(const std::string& expression) = 0;

    /// Writes a picture of the window, as PNG.
    virtual void screenshot(const std::string& file) = 0;
};

/// What the library of an interface exports under this name. Null where there is no display.
using MakePlayInterface = PlayInterface* (*)(const PlayWait& wait);
inline constexpr const char* makePlayInterfaceName = "orbinelMakePlayInterface";

}  // namespace orbinel::tool
