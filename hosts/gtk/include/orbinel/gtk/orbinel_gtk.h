#pragma once

#include "orbinel/linux/orbinel_linux.h"

/* Starting the library in an application with a GTK window from a program of another language. orbinel/orbinel.h tells
 * how texts, JSON, errors and callbacks are handed over; orbinel/gtk/gtk_host.hpp describes the host, which by itself
 * follows the window's coming and going, and hands opened links and notifications to the delegates
 * (orbinel/orbinel_delegate.h).
 *
 * THREADS. All functions are for the thread that runs GTK's main loop. */

#ifdef __cplusplus
extern "C" {
#endif

struct _GtkWindow;

typedef struct orbinel_gtk orbinel_gtk;

/* Starts the library over a toplevel window (a GtkWindow*), after gtk_init, shown or not yet shown. `options`: those of
 * `orbinel_start_linux`. NULL where that fails (`orbinel_last_error`); the host is the caller's. */
ORBINEL_API orbinel_gtk* orbinel_start_gtk(struct _GtkWindow* window, const char* options);

/* Frees the host; to be called after `orbinel_shutdown`, and not from within the main loop's work for it. */
ORBINEL_API void orbinel_gtk_free(orbinel_gtk* host);

/* Has the desktop show a notification. `notification`: a JSON object:
 *
 *     "identifier"  text; a later one of the same identifier takes this one's place
 *     "title"       text
 *     "body"        text
 *     "user_info"   object: what the notification centre's delegate is told
 *
 * All may be missing. The completion, which may be NULL, runs possibly inside the call: with NULL, or one sentence
 * where nothing was shown. */
ORBINEL_API void orbinel_gtk_present(orbinel_gtk* host, const char* notification, orbinel_callback completion,
                                     void* user_data, orbinel_destroy destroy);

#ifdef __cplusplus
}
#endif
