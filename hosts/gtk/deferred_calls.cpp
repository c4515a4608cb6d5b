#include "hosts/gtk/deferred_calls.hpp"

#include <glib.h>

#include <utility>

namespace orbinel::hosts {

DeferredCalls::~DeferredCalls() {
    if (source_ != 0) g_source_remove(source_);
}

void DeferredCalls::add(std::function<void()> call) {
    calls_.push_back(std::move(call));
    if (source_ == 0) source_ = g_idle_add_full(G_PRIORITY_DEFAULT, &DeferredCalls::run, this, nullptr);
}

int DeferredCalls::run(void* self) noexcept {
    auto& calls = *static_cast<DeferredCalls*>(self);
    calls.source_ = 0;
    const std::weak_ptr<bool> alive = calls.alive_;
    for (auto& call : std::exchange(calls.calls_, {})) {
        if (alive.expired()) break;
        call();
    }
    return G_SOURCE_REMOVE;
}

}  // namespace orbinel::hosts
