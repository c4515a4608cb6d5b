#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "apps/orbinel/play/operation.hpp"
#include "apps/orbinel/play/play_host.hpp"
#include "apps/orbinel/play/scenario.hpp"
#include "apps/orbinel/play/trace.hpp"

namespace orbinel::tool {

/// Plays a scenario on a host, from its first launch to its end.
///
/// Threads: the host's main thread.
class Player {
public:
    /// Takes one clause for each expectation that fails and for a step that cannot be carried out.
    using Complain = std::function<void(const std::string& clause)>;

    enum class Verdict { held, expectationFailed, notCarriedOut };

    Player(const Scenario& scenario, PlayHost& host, Trace& trace, Complain complain)
        : scenario_(scenario), host_(host), trace_(trace), complain_(std::move(complain)) {}

    [[nodiscard]] Verdict play();

private:
    void runSteps(const std::vector<Step>& steps);
    void runStep(const Step& step);

    // One for each kind of step.
    void run(const CallStep& call);
    void run(const NotifyStep& notify);
    void run(const DeviceStep& device);
    void run(const DeliverStep& step);
    void run(const AdvanceStep& advance);
    void run(const SettleStep& settle);
    void run(const WaitForStep& wait);
    void run(const RelaunchStep& relaunch);
    void run(const RepeatStep& repeat);
    void run(const InspectStep& inspect);
    void run(const TemplateStep& step);
    void run(const PageStep& page);
    void run(const ScreenshotStep& screenshot);
    void run(const ShakeStep& shake);
    void run(const MarkStep& mark);
    void run(const Expectation& expectation);
    void run(const ReleaseStep& release);

    void callChain(const CallStep& call);
    void inBackground(const std::function<void()>& work);
    [[nodiscard]] CallArgument resolved(const Argument& argument) const;
    [[nodiscard]] const Thing& kept(const std::string& name) const;
    [[nodiscard]] Dictionary numbered(Value result) const;

    const Scenario& scenario_;
    PlayHost& host_;
    Trace& trace_;
    const Complain complain_;

    const Step* current_ = nullptr;  // the innermost step that runs
    std::map<std::string, Thing, std::less<>> kept_;
    bool expectationFailed_ = false;
};

}  // namespace orbinel::tool
