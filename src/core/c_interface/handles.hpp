#pragma once

#include <new>
#include <utility>

#include "core/c_interface/json.hpp"
#include "orbinel/c_interface.hpp"
#include "orbinel/event.hpp"
#include "orbinel/identifiers.hpp"
#include "orbinel/orbinel.h"
#include "orbinel/product.hpp"
#include "orbinel/user.hpp"

// The objects of programs of other languages: each one object of the facade's.

struct orbinel_event {
    orbinel::OrbinelEvent object;
};
struct orbinel_user {
    orbinel::OrbinelUser object;
};
struct orbinel_product {
    orbinel::OrbinelProduct object;
};
struct orbinel_identifiers {
    orbinel::OrbinelIdentifiers object;
};

namespace orbinel::c_interface {

/// Null where there is no memory; an operation on that does nothing.
template <typename Handle, typename Object>
[[nodiscard]] Handle* newHandle(Object&& object) noexcept {
    return new (std::nothrow) Handle{std::forward<Object>(object)};
}

template <typename Handle>
[[nodiscard]] Handle* copyOf(const Handle* handle) noexcept {
    forgetError();
    return handle != nullptr ? newHandle<Handle>(handle->object) : nullptr;
}

/// Takes a step on the object, where there is one.
template <typename Handle, typename Step>
void on(const char* function, Handle* handle, Step&& step) noexcept {
    run(function, [&] {
        if (handle != nullptr) step(handle->object);
    });
}

/// The same for a step with a result; neutral without an object.
template <typename Result, typename Handle, typename Look>
[[nodiscard]] Result look(const char* function, const Handle* handle, Result neutral, Look&& lookAt) noexcept {
    return run(function, neutral, [&] { return handle != nullptr ? lookAt(handle->object) : neutral; });
}

/// The text of an object; null without one.
template <typename Handle, typename Look>
[[nodiscard]] char* lookAtText(const char* function, const Handle* handle, Look&& lookAt) noexcept {
    return look(function, handle, static_cast<char*>(nullptr),
                [&](const auto& object) { return newText(lookAt(object)); });
}

/// The same as JSON text.
template <typename Handle, typename Look>
[[nodiscard]] char* lookAtJson(const char* function, const Handle* handle, Look&& lookAt) noexcept {
    return look(function, handle, static_cast<char*>(nullptr),
                [&](const auto& object) { return jsonOf(lookAt(object)); });
}

}  // namespace orbinel::c_interface
