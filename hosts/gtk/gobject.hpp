#pragma once

#include <glib-object.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace orbinel::hosts {

struct ObjectUnref {
    void operator()(gpointer object) const noexcept { g_object_unref(object); }
};

/// A reference to a GObject.
template <typename T>
using ObjectPointer = std::unique_ptr<T, ObjectUnref>;

/// Takes a further reference, or takes over a floating one.
template <typename T>
[[nodiscard]] ObjectPointer<T> retain(T* object) noexcept {
    return ObjectPointer<T>(object != nullptr ? static_cast<T*>(g_object_ref_sink(object)) : nullptr);
}

/// Knows a GObject without keeping it: null once it is gone.
template <typename T>
class WeakObject {
public:
    explicit WeakObject(T* object) : object_(object) { g_object_add_weak_pointer(G_OBJECT(object), location()); }
    ~WeakObject() {
        if (object_ != nullptr) g_object_remove_weak_pointer(G_OBJECT(object_), location());
    }
    WeakObject(const WeakObject&) = delete;
    WeakObject& operator=(const WeakObject&) = delete;

    [[nodiscard]] T* get() const noexcept { return object_; }

private:
    gpointer* location() noexcept { return reinterpret_cast<gpointer*>(&object_); }

    T* object_;
};

struct GlibFree {
    void operator()(gpointer memory) const noexcept { g_free(memory); }
};

using TextPointer = std::unique_ptr<char, GlibFree>;

/// Connects an owner to signals; none reaches it once this is gone, whichever of the two sides ends first.
///
/// Threads: main thread only. A handler finds its owner through `ownerOf`, given the handler's last argument.
template <typename Owner>
class SignalConnections {
public:
    explicit SignalConnections(Owner& owner) : anchor_(G_OBJECT(g_object_new(G_TYPE_OBJECT, nullptr))) {
        g_object_set_data(anchor_.get(), ownerKey, &owner);
    }

    void connect(gpointer instance, const char* signal, GCallback handler) {
        g_signal_connect_object(instance, signal, handler, anchor_.get(), GConnectFlags{});
    }

    [[nodiscard]] static Owner& ownerOf(gpointer anchor) noexcept {
        return *static_cast<Owner*>(g_object_get_data(G_OBJECT(anchor), ownerKey));
    }

private:
    static constexpr const char* ownerKey = "orbinel-owner";

    const ObjectPointer<GObject> anchor_;
};

}  // namespace orbinel::hosts
