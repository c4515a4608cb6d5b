#pragma once

#include "orbinel/orbinel.h"

/* Starting the library without a platform, for tests of programs of other languages: everything in memory, a virtual
 * clock, a network of scripted answers. orbinel/orbinel.h tells how texts, JSON and errors are handed over;
 * orbinel/headless/headless_host.hpp describes the host.
 *
 * THREADS. The thread that starts the library is the main thread, and all functions are for it alone. */

#ifdef __cplusplus
extern "C" {
#endif

typedef struct orbinel_headless orbinel_headless;

/* Starts the library. `options`: a JSON object, or NULL for none: "start", at how many seconds since 1970 the clock
 * stands. NULL where that fails (`orbinel_last_error`); the host is the caller's. */
ORBINEL_API orbinel_headless* orbinel_start_headless(const char* options);

/* Frees the host; to be called after `orbinel_shutdown`. */
ORBINEL_API void orbinel_headless_free(orbinel_headless* host);

/* Tells the library what the platform would tell it: a session begins, a session ends, the process ends. */
ORBINEL_API void orbinel_headless_did_become_active(orbinel_headless* host);
ORBINEL_API void orbinel_headless_did_enter_background(orbinel_headless* host);
ORBINEL_API void orbinel_headless_will_terminate(orbinel_headless* host);

/* Runs due work, and waits for answers, until there is neither. */
ORBINEL_API void orbinel_headless_settle(orbinel_headless* host);

/* Moves the clock on, settling at each moment at which work falls due. */
ORBINEL_API void orbinel_headless_advance(orbinel_headless* host, double seconds);

/* From now on requests whose URL contains the text are answered so; of several texts that fit, the one given last
 * counts. A request that none fits fails. `body`: NULL stands for the empty one. */
ORBINEL_API void orbinel_headless_answer(orbinel_headless* host, const char* url_part, int32_t status,
                                         const char* body);

/* What was sent so far: a JSON array of {"method", "url", "headers": {…}, "body"}. */
ORBINEL_API char* orbinel_headless_requests(orbinel_headless* host);

/* What was written on the console so far: a JSON array of texts. */
ORBINEL_API char* orbinel_headless_console_lines(orbinel_headless* host);

#ifdef __cplusplus
}
#endif
