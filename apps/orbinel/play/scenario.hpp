#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "apps/orbinel/play/arguments.hpp"
#include "apps/orbinel/play/delivery.hpp"
#include "apps/orbinel/play/device_facts.hpp"
#include "apps/orbinel/play/expectation.hpp"
#include "apps/orbinel/play/host_description.hpp"
#include "apps/orbinel/play/inspection.hpp"
#include "apps/orbinel/play/operation.hpp"
#include "apps/orbinel/play/page_action.hpp"
#include "orbinel/platform/accelerometer.hpp"
#include "orbinel/value.hpp"

/// A scenario that has been read and checked as a whole: playing it can fail, but it cannot be misunderstood.
namespace orbinel::tool {

/// Where a play shows its messages.
enum class Interface { headless, gtk };

struct Invocation {
    const Operation* operation = nullptr;
    std::vector<Argument> arguments;
};

struct CallStep {
    std::optional<std::string> receiver;  // a kept object; otherwise the facade
    std::vector<Invocation> chain;        // at least one; each further one on the last object before it
    std::optional<std::string> keepAs;
    bool inBackground = false;
};

struct NotifyStep {
    std::string name;
    Dictionary info;
};

struct DeviceStep {
    std::vector<FactChange> changes;
};

struct DeliverStep {
    Delivery delivery;
};

struct AdvanceStep {
    double seconds = 0;
    bool settle = true;
};

struct SettleStep {
    std::chrono::milliseconds limit{5000};
    std::vector<std::string> ignoredUrlParts;
    bool failOnLimit = true;
};

struct WaitForStep {
    EntryPattern entry;
    std::chrono::milliseconds limit{5000};
};

struct RelaunchStep {
    bool kill = false;
};

struct InspectStep {
    std::string name;
    Inspection inspection = nullptr;
};

struct TemplateStep {
    PageAction action;
};

/// Evaluates in the page.
struct PageStep {
    std::string expression;
};

/// Takes a picture of the window.
struct ScreenshotStep {
    std::string file;
};

/// One sample of the accelerometer.
struct ShakeStep {
    platform::Acceleration acceleration;
};

struct MarkStep {};

struct ReleaseStep {
    std::string name;
};

struct Step;

struct RepeatStep {
    std::size_t times = 0;
    std::vector<Step> steps;
};

struct Step {
    std::vector<std::size_t> place;  // its number from 0; within a repetition, the repetition's first
    std::variant<CallStep, NotifyStep, DeviceStep, DeliverStep, AdvanceStep, SettleStep, WaitForStep, RelaunchStep,
                 RepeatStep, InspectStep, TemplateStep, PageStep, ScreenshotStep, ShakeStep, MarkStep, Expectation,
                 ReleaseStep>
        action;
};

/// What lies in the stores before the first launch. An absent value removes what is there.
struct Preset {
    Dictionary defaults;
    std::string appGroupName;
    Dictionary appGroup;
    Dictionary secure;
    Dictionary contentCache;
};

struct Scenario {
    std::string name;
    std::optional<double> clockStart;  // seconds since 1970; absent: real time
    std::vector<FactChange> device;
    HostDescription host;
    Preset preset;
    std::vector<Step> steps;
};

/// "step 4, inner step 2".
[[nodiscard]] std::string inWords(const std::vector<std::size_t>& place);

}  // namespace orbinel::tool
