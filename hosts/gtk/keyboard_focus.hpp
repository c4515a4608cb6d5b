#pragma once

#include <atomic>

namespace orbinel::hosts {

/// Who has the keyboard: a text field of the application, one inside a page, or none.
///
/// Threads: `isOpen` from any thread; the rest on the main thread.
class KeyboardFocus {
public:
    [[nodiscard]] bool isOpen() const noexcept { return open_; }

    void setFieldFocused(bool focused) noexcept {
        field_ = focused;
        mirror();
    }

    void pageGotFocus(const void* page) noexcept {
        page_ = page;
        mirror();
    }

    void pageLostFocus(const void* page) noexcept {
        if (page_ == page) page_ = nullptr;
        mirror();
    }

private:
    void mirror() noexcept { open_ = field_ || page_ != nullptr; }

    std::atomic<bool> open_{false};
    bool field_ = false;
    const void* page_ = nullptr;
};

}  // namespace orbinel::hosts
