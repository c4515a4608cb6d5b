#include "hosts/linux/glib_main_source.hpp"

#include <glib-unix.h>

namespace orbinel::hosts {

namespace {

using QueuePointer = std::shared_ptr<MainQueue>;

gboolean runQueue(gint /*fileDescriptor*/, GIOCondition /*condition*/, gpointer data) noexcept {
    const auto queue = *static_cast<QueuePointer*>(data);  // a task may end the source
    // Only what waits now: tasks that post tasks must not keep the context from its other sources.
    queue->runReady(queue->size());
    return G_SOURCE_CONTINUE;
}

void dropQueue(gpointer data) noexcept { delete static_cast<QueuePointer*>(data); }

}  // namespace

GlibMainSource::GlibMainSource(std::shared_ptr<MainQueue> queue)
    : source_(g_unix_fd_source_new(queue->wakeFileDescriptor(), G_IO_IN)) {
    auto* data = new QueuePointer(std::move(queue));
    g_source_set_callback(source_, reinterpret_cast<GSourceFunc>(reinterpret_cast<void (*)()>(&runQueue)), data,
                          &dropQueue);
    g_source_attach(source_, nullptr);
}

GlibMainSource::~GlibMainSource() {
    g_source_destroy(source_);
    g_source_unref(source_);
}

}  // namespace orbinel::hosts
