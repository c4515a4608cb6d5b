#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "apps/orbinel/play/delivery.hpp"
#include "apps/orbinel/play/host_description.hpp"
#include "apps/orbinel/play/trace.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/platform/delegate.hpp"
#include "orbinel/platform/notifications.hpp"

namespace orbinel::tool {

/// The delegates of one process of the scenario's application. Their handlers write into the trace that they were
/// called, tell the platform that they are done, and answer yes.
class HostDelegates {
public:
    /// The trace must outlive it.
    HostDelegates(const HostDescription& host, Trace& trace);

    /// Sets them as the application does while it launches.
    void setOn(platform::Application& application, platform::Notifications& notifications) const;

    /// Performs the operation on the delegate that is set for it, where there is one that implements it.
    void deliver(const Delivery& delivery, const platform::Application& application,
                 const platform::Notifications& notifications) const;

private:
    using DelegatePointer = std::shared_ptr<platform::Delegate>;

    [[nodiscard]] static DelegatePointer make(std::string name, const std::vector<std::string>& operations,
                                              Trace& trace);

    const bool setTwice_;
    const DelegatePointer application_;
    const DelegatePointer notifications_;
    const DelegatePointer scene_;
};

}  // namespace orbinel::tool
