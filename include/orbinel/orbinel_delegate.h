#pragma once

#include "orbinel/orbinel.h"

/* Delegates: how a program of another language hears what its platform has for it (a device token, a push, an opened
 * link), and answers, while the library hears the same. orbinel/platform/delegate.hpp describes them,
 * docs/guide/push-and-links.md which hosts deliver what. orbinel/orbinel.h tells how texts, JSON and errors are handed
 * over.
 *
 * A program makes a delegate once the library is started, adds what it implements, and makes it the application's, the
 * notification centre's, or both, before it initialises the library: from then on the library stands in front. What is
 * added later is too late.
 *
 * THREADS. An implementation runs on the thread of whoever performs the operation: the main thread where that is the
 * host. Setting is for the main thread, all else for any. An implementation may call every function of the library.
 *
 * LIFETIME. A delegate lives as long as the program or a host holds it. When nobody does, `destroy` is called with its
 * user data, once, on whichever thread lets go. It goes on working after the shutdown: then the program's own
 * implementations run alone. */

#ifdef __cplusplus
extern "C" {
#endif

typedef struct orbinel_delegate orbinel_delegate;

/* How a delegate tells the platform that it is done with a push: whichever copy is called first does. */
typedef struct orbinel_completion_handler orbinel_completion_handler;

/* The operations, each with the arguments that it carries: a JSON object of these keys. A text stands for an URL
 * (RFC 3986), an object of the platform's for a payload and for options. */

/* "device_token": a text of hexadecimal digits, two a byte. */
#define ORBINEL_DID_REGISTER_FOR_REMOTE_NOTIFICATIONS "application:didRegisterForRemoteNotificationsWithDeviceToken:"
/* "code": a whole number; "description": a text. */
#define ORBINEL_DID_FAIL_TO_REGISTER_FOR_REMOTE_NOTIFICATIONS \
    "application:didFailToRegisterForRemoteNotificationsWithError:"
/* "user_info"; the handler is to be called. */
#define ORBINEL_DID_RECEIVE_REMOTE_NOTIFICATION_FETCHING \
    "application:didReceiveRemoteNotification:fetchCompletionHandler:"
/* "user_info". */
#define ORBINEL_DID_RECEIVE_REMOTE_NOTIFICATION "application:didReceiveRemoteNotification:"
/* "url", "options"; answers whether the URL was taken. */
#define ORBINEL_OPEN_URL_WITH_OPTIONS "application:openURL:options:"
/* "url"; answers whether the URL was taken. */
#define ORBINEL_HANDLE_OPEN_URL "application:handleOpenURL:"
/* "url", and "source_application" (a text) where it is known; answers whether the URL was taken. */
#define ORBINEL_OPEN_URL_WITH_SOURCE_APPLICATION "application:openURL:sourceApplication:annotation:"
/* "type" (a text), and "webpage_url" where there is a page; answers whether the activity was taken. */
#define ORBINEL_CONTINUE_USER_ACTIVITY "application:continueUserActivity:restorationHandler:"

/* Of the notification centre's delegate: "user_info"; the handler is to be called. */
#define ORBINEL_DID_RECEIVE_NOTIFICATION_RESPONSE \
    "userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:"
/* The same; answers yes where the application shows the notification itself. */
#define ORBINEL_WILL_PRESENT_NOTIFICATION "userNotificationCenter:willPresentNotification:withCompletionHandler:"

/* What a delegate does for an operation. The texts and the handler are the program's until it returns. The answer of an
 * operation that answers nothing is not looked at. May not throw or jump out. */
typedef bool (*orbinel_delegate_implementation)(void* user_data, const char* operation, const char* arguments,
                                                const orbinel_completion_handler* completion_handler);

/* NULL where the library is not started. The delegate is the caller's. */
ORBINEL_API orbinel_delegate* orbinel_delegate_create(void* user_data, orbinel_destroy destroy);
ORBINEL_API void orbinel_delegate_free(orbinel_delegate* delegate);

/* False, and nothing changes, where the delegate implements the operation already, and where there is no such operation
 * (`orbinel_last_error`). */
ORBINEL_API bool orbinel_delegate_add_operation(orbinel_delegate* delegate, const char* operation,
                                                orbinel_delegate_implementation implementation);

/* Performs an operation, as a host does that delivers it: for programs that hear of tokens, pushes or links by ways of
 * their own. Keys that are missing stand for what is empty. The answer; false where the delegate does not implement the
 * operation. `completion`, which may be NULL, is called once: when somebody calls the handler, on that thread, which
 * the library does where the delegate does not implement the operation; never where nobody does. */
ORBINEL_API bool orbinel_delegate_perform(const orbinel_delegate* delegate, const char* operation,
                                          const char* arguments, orbinel_completion completion, void* user_data,
                                          orbinel_destroy destroy);

/* Make the delegate the one of the host that started the library; NULL: it has none. Main thread. */
ORBINEL_API void orbinel_set_application_delegate(const orbinel_delegate* delegate);
ORBINEL_API void orbinel_set_notification_delegate(const orbinel_delegate* delegate);

/* For calling the handler later. The copy is the caller's. */
ORBINEL_API orbinel_completion_handler* orbinel_completion_handler_copy(const orbinel_completion_handler* handler);
ORBINEL_API void orbinel_completion_handler_free(orbinel_completion_handler* handler);

/* Tells the platform, where nobody has yet; nothing for an operation that has no handler. */
ORBINEL_API void orbinel_completion_handler_call(const orbinel_completion_handler* handler);

#ifdef __cplusplus
}
#endif
