#pragma once

#include <utility>

#include "base/guard.hpp"
#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "orbinel/platform/scheduler.hpp"

namespace orbinel {

/// Takes an operation's work to the main thread.
///
/// Threads: any.
class MainThread {
public:
    struct Needs {
        Reports& reports;
        const Lifetime& lifetime;
        platform::Scheduler& scheduler;
    };

    explicit MainThread(const Needs& needs) : needs_(needs) {}

    /// Runs the work at once where that is the calling thread, else on the main queue; only while the library runs, and
    /// under the operation's exception guard. The operation's name is a literal.
    template <typename Work>
    void run(const GuardedOperation& operation, Work work) const noexcept {
        guarded(needs_.reports, operation, [&] {
            auto whileAlive =
                needs_.lifetime.whileAlive([&reports = needs_.reports, operation, work = std::move(work)]() mutable {
                    guarded(reports, operation, work);
                });
            if (needs_.scheduler.isMain()) return whileAlive();
            needs_.scheduler.postMain(std::move(whileAlive));
        });
    }

private:
    const Needs needs_;
};

}  // namespace orbinel
