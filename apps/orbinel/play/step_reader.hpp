#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "apps/orbinel/play/arguments.hpp"
#include "apps/orbinel/play/fields.hpp"
#include "apps/orbinel/play/scenario.hpp"

namespace orbinel::tool {

/// Reads the steps of a scenario in their order, so that every name that a step uses is one that a step before it has
/// kept. Throws `Unusable`, with the step's number.
class StepReader {
public:
    StepReader(ArgumentReader& arguments, bool hasVirtualClock, Interface interface)
        : arguments_(arguments), hasVirtualClock_(hasVirtualClock), interface_(interface) {}

    [[nodiscard]] std::vector<Step> read(const Value& json);

private:
    using Place = std::vector<std::size_t>;
    using Action = decltype(Step::action);

    [[nodiscard]] std::vector<Step> readSteps(const Array& list, const Place& outer, double rounds);
    [[nodiscard]] Step readStep(const Value& json, Place place, double rounds);
    [[nodiscard]] Action readAction(const Value& json, const Place& place, double rounds);

    [[nodiscard]] CallStep readCall(Fields& fields);
    [[nodiscard]] Invocation readInvocation(Fields& fields, ThingKind receiver);
    [[nodiscard]] Argument readArgument(const Value& json, ArgumentKind wanted, std::string_view what);
    [[nodiscard]] Argument readProducts(const Value& json, std::string_view what);
    [[nodiscard]] NotifyStep readNotification(Fields& fields);
    [[nodiscard]] AdvanceStep readAdvance(Fields& fields) const;
    /// The text of a step that only a window can carry out.
    [[nodiscard]] std::string readWindowText(Fields& fields, std::string_view key) const;
    [[nodiscard]] WaitForStep readWaitFor(Fields& fields);
    [[nodiscard]] RepeatStep readRepeat(Fields& fields, const Place& place, double rounds);
    [[nodiscard]] ReleaseStep readRelease(Fields& fields);
    [[nodiscard]] ThingKind kindOf(const std::string& name) const;

    ArgumentReader& arguments_;
    const bool hasVirtualClock_;
    const Interface interface_;
    std::map<std::string, ThingKind, std::less<>> kept_;
    double played_ = 0;  // steps so far, repetitions counted out
};

}  // namespace orbinel::tool
