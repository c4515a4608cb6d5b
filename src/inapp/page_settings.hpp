#pragma once

#include <string>

#include "base/mutex.hpp"
#include "inapp/page_start_script.hpp"
#include "orbinel/platform/json.hpp"

namespace orbinel {

/// What the application has set for the pages of messages: fonts, and whether they are debugged. Pages that are built
/// from then on have it.
///
/// Threads: any.
class PageSettings {
public:
    void setCustomRegularFont(std::string name) noexcept { setFont(&CustomFonts::regular, name); }
    void setCustomBoldFont(std::string name) noexcept { setFont(&CustomFonts::bold, name); }
    void setCustomItalicFont(std::string name) noexcept { setFont(&CustomFonts::italic, name); }

    /// Whether pages tell the console what they write to theirs.
    void setDebuggingEnabled(bool enabled) noexcept {
        const MutexLock lock(mutex_);
        debugging_ = enabled;
    }

    [[nodiscard]] std::string startScript(const platform::Json& json) const {
        const MutexLock lock(mutex_);
        return pageStartScript(json, fonts_, debugging_);
    }

private:
    void setFont(std::string CustomFonts::*font, std::string& name) noexcept {
        const MutexLock lock(mutex_);
        (fonts_.*font).swap(name);
    }

    mutable Mutex mutex_;
    CustomFonts fonts_ ORBINEL_GUARDED_BY(mutex_);
    bool debugging_ ORBINEL_GUARDED_BY(mutex_) = false;
};

}  // namespace orbinel
