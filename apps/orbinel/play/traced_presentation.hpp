#pragma once

#include <string>

#include "apps/orbinel/play/trace.hpp"
#include "inapp/presentation_observer.hpp"

namespace orbinel::tool {

/// Writes into the trace what is shown, and what the library says to pages.
class TracedPresentation final : public PresentationObserver {
public:
    explicit TracedPresentation(Trace& trace) : trace_(trace) {}

    void built(const PresentedView& view) override { write("built", view); }
    void shown(const PresentedView& view) override { write("shown", view); }
    void moved(const PresentedView& view) override { write("moved", view); }
    void removed(const PresentedView& view) override { write("removed", view); }
    void scriptEvaluated(std::string_view script) override { trace_.write({{"script", script}}); }
    void browserOpened(std::string_view url) override { trace_.write({{"opened", url}, {"where", "browser"}}); }

private:
    void write(std::string_view event, const PresentedView& view) {
        const auto& frame = view.frame;
        trace_.write(
            {{"view", event},
             {"url", view.url},
             {"inapp_id", view.inappId},
             {"frame", Dictionary{{"x", frame.x}, {"y", frame.y}, {"width", frame.width}, {"height", frame.height}}}});
    }

    Trace& trace_;
};

}  // namespace orbinel::tool
