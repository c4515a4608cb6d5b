#pragma once

#include <memory>

#include "hosts/linux/main_queue.hpp"

struct _GSource;

namespace orbinel::hosts {

/// Runs a main queue from GLib's default main context: the context only wakes the queue, which keeps its own order.
///
/// Threads: made and destroyed on any thread; tasks run on the thread that iterates the context.
class GlibMainSource {
public:
    explicit GlibMainSource(std::shared_ptr<MainQueue> queue);
    ~GlibMainSource();
    GlibMainSource(const GlibMainSource&) = delete;
    GlibMainSource& operator=(const GlibMainSource&) = delete;

private:
    _GSource* const source_;
};

}  // namespace orbinel::hosts
