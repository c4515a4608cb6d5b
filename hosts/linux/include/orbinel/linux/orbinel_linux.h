#pragma once

#include "orbinel/orbinel.h"

/* Starting the library on Linux from a program of another language. orbinel/orbinel.h tells how texts, JSON, errors and
 * callbacks are handed over; orbinel/linux/linux_host.hpp describes the host.
 *
 * THREADS. The thread that starts the library is the main thread. All functions are for it alone, but
 * `orbinel_linux_quit`. */

#ifdef __cplusplus
extern "C" {
#endif

/* The services, and the main queue that the program has to run. */
typedef struct orbinel_linux orbinel_linux;

/* Starts the library. `options`: a JSON object, or NULL for none:
 *
 *     "data_directory"          text; without it "orbinel/PROGRAM" in the person's data directory
 *     "application_version"     text
 *     "application_identifier"  text; without it the program's name
 *     "localisation"            text (BCP 47); without it the person's language
 *     "url_schemes"             array of texts in lower case
 *     "information"             object: what else the application says of itself
 *     "background_may_suspend"  boolean; false
 *     "proxy"                   text: a URL, or "" for none; without it the environment's
 *     "certificate_authorities" text: a file or directory; without it the environment's, else the system's
 *
 * NULL where that fails (`orbinel_last_error`); the host is the caller's. */
ORBINEL_API orbinel_linux* orbinel_start_linux(const char* options);

/* Frees the host; to be called after `orbinel_shutdown`, and not from within the main queue. What the queue still
 * holds is dropped. */
ORBINEL_API void orbinel_linux_free(orbinel_linux* host);

/* Tells the library what the platform would tell it: a session begins, a session ends, the process ends. */
ORBINEL_API void orbinel_linux_did_become_active(orbinel_linux* host);
ORBINEL_API void orbinel_linux_did_enter_background(orbinel_linux* host);
ORBINEL_API void orbinel_linux_will_terminate(orbinel_linux* host);

/* Runs what is due on the main queue, without waiting; how many tasks it ran. */
ORBINEL_API size_t orbinel_linux_run_main_queue(orbinel_linux* host);

/* Runs the main queue until the predicate, asked before each task, is true; false when so many milliseconds have passed
 * before. A NULL predicate never is. */
ORBINEL_API bool orbinel_linux_run_until(orbinel_linux* host, bool (*predicate)(void* user_data), void* user_data,
                                         int64_t milliseconds);

/* Runs the main queue until somebody quits. Any thread may. */
ORBINEL_API void orbinel_linux_run(orbinel_linux* host);
ORBINEL_API void orbinel_linux_quit(orbinel_linux* host);

/* From now on GLib's default main context runs the main queue. */
ORBINEL_API void orbinel_linux_attach_to_glib_main_context(orbinel_linux* host);

#ifdef __cplusplus
}
#endif
