#include <cstdlib>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "base/visit.hpp"
#include "core/c_interface/callbacks.hpp"
#include "core/c_interface/delegate_arguments.hpp"
#include "core/c_interface/json.hpp"
#include "core/current_world.hpp"
#include "core/world.hpp"
#include "orbinel/c_interface.hpp"
#include "orbinel/orbinel_delegate.h"

using namespace orbinel;
using namespace orbinel::c_interface;

struct orbinel_completion_handler {
    platform::CompletionHandler handler;
};

struct orbinel_delegate {
    std::shared_ptr<platform::Delegate> object;
    UserData userData;
    std::shared_ptr<const platform::Json> json;  // kept, because hosts deliver after the shutdown, too
};

namespace {

/// What C does for an operation. Without arguments, for want of memory, the platform is told at once.
platform::DelegateImplementation implementationOf(const orbinel_delegate& delegate, std::string_view operation,
                                                  orbinel_delegate_implementation implementation) {
    return [implementation, operation, userData = delegate.userData, json = delegate.json](
               platform::Delegate&, const platform::DelegateArguments& arguments) -> platform::DelegateResult {
        const std::unique_ptr<char, decltype(&std::free)> text(newJson(*json, describedArguments(operation, arguments)),
                                                               &std::free);
        const orbinel_completion_handler handler{arguments.completion};
        if (text != nullptr) return implementation(userData.get(), operation.data(), text.get(), &handler);
        handler.handler();
        return std::nullopt;
    };
}

/// Of the host, for a call that the library need not wait for when it ends.
platform::Services runningServices() {
    const Visit<World> world(current_world::entrance());
    if (!world) throw WrongArgument("the library is not started, and so has no host.");
    return world->services;
}

std::shared_ptr<platform::Delegate> objectOf(const orbinel_delegate* delegate) noexcept {
    return delegate != nullptr ? delegate->object : nullptr;
}

}  // namespace

orbinel_delegate* orbinel_delegate_create(void* user_data, orbinel_destroy destroy) {
    return run(__func__, static_cast<orbinel_delegate*>(nullptr), [&] {
        auto userData = takeUserData(user_data, destroy);
        auto json = jsonService();
        auto object = std::make_shared<platform::Delegate>(std::make_shared<platform::DelegateClass>("C"));
        return new orbinel_delegate{std::move(object), std::move(userData), std::move(json)};
    });
}

void orbinel_delegate_free(orbinel_delegate* delegate) { delete delegate; }

bool orbinel_delegate_add_operation(orbinel_delegate* delegate, const char* operation,
                                    orbinel_delegate_implementation implementation) {
    return run(__func__, false, [&] {
        const auto known = knownOperation(operation);
        if (implementation == nullptr) throw WrongArgument("implementation must not be NULL.");
        return delegate != nullptr &&
               delegate->object->type()->addOperation(known, implementationOf(*delegate, known, implementation));
    });
}

bool orbinel_delegate_perform(const orbinel_delegate* delegate, const char* operation, const char* arguments,
                              orbinel_completion completion, void* user_data, orbinel_destroy destroy) {
    return run(__func__, false, [&] {
        auto userData = takeUserData(user_data, destroy);
        if (delegate == nullptr) return false;
        const auto known = knownOperation(operation);
        auto given = readArguments(known, readDictionary(*delegate->json, "arguments", arguments));
        given.completion = platform::CompletionHandler(completionCallback(completion, std::move(userData)));
        const auto object = delegate->object;  // an implementation may free the delegate
        return object->perform(known, given).value_or(false);
    });
}

void orbinel_set_application_delegate(const orbinel_delegate* delegate) {
    run(__func__, [&] { runningServices().application->setDelegate(objectOf(delegate)); });
}

void orbinel_set_notification_delegate(const orbinel_delegate* delegate) {
    run(__func__, [&] { runningServices().notifications->setDelegate(objectOf(delegate)); });
}

orbinel_completion_handler* orbinel_completion_handler_copy(const orbinel_completion_handler* handler) {
    forgetError();
    return handler != nullptr ? new (std::nothrow) orbinel_completion_handler{handler->handler} : nullptr;
}

void orbinel_completion_handler_free(orbinel_completion_handler* handler) { delete handler; }

void orbinel_completion_handler_call(const orbinel_completion_handler* handler) {
    run(__func__, [&] {
        if (handler != nullptr) handler->handler();
    });
}
