/*
 * diags.h: the diagnostics of a machine for every language that can call C.
 *
 * A session is an installation; it can be listed and asked. A plan says which of its tests run, and
 * how. A run carries a plan out, each test in a process of its own: whatever a test does, the
 * caller goes on. The caller's process loads no provider.
 *
 *     diags_session *session;
 *     diags_plan *plan;
 *     diags_run *run;
 *     char *event;
 *     if (diags_open(NULL, &session) || diags_plan_named(session, "quick", &plan) ||
 *         diags_run_start(session, plan, NULL, NULL, &run)) {
 *       fprintf(stderr, "%s\n", diags_last_error());
 *       return 1;
 *     }
 *     while (diags_run_next(run, -1, &event) == DIAGS_OK) {
 *       puts(event);
 *       diags_free(event);
 *     }
 *
 * Texts are UTF-8 and end in a zero byte. What comes from a machine or a provider stands in them as
 * it came: make it safe before it goes to a terminal or a page (JSON texts are safe on a terminal
 * already).
 *
 * Ownership: what a function hands out by a `char **` belongs to the caller, who gives it back to
 * diags_free(); sessions, plans and runs go to their own close function. Arguments are copied; none
 * is kept after a call. Where a call fails, what it should have filled in is NULL or unchanged, as
 * it says.
 *
 * Threads: every function may be called from any thread, at the same time as any other, but for the
 * close of an object, which has to be the last call with it. Nothing throws, and no locale or
 * standard stream of the process is changed; of the signals SIGCHLD alone goes to the library, too,
 * while a worker is up (docs/c-interface.md). Do not call anything here between fork() and exec().
 */
#ifndef DIAGS_DIAGS_H
#define DIAGS_DIAGS_H

/* NOLINTBEGIN(modernize-deprecated-headers): C has no others. */
#include <stddef.h>
#include <stdint.h>
/* NOLINTEND(modernize-deprecated-headers) */

#if defined(_WIN32)
#if defined(DIAGS_BUILD)
#define DIAGS_API __declspec(dllexport)
#else
#define DIAGS_API __declspec(dllimport)
#endif
#else
#define DIAGS_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Rises by one with every function, code or member that is added. None is ever taken away. */
#define DIAGS_INTERFACE 5

/* What came of a call. */
typedef enum diags_code {
  DIAGS_OK = 0,
  DIAGS_BAD_ARGUMENT = 1, /* NULL or a value that makes no sense; the text says which one */
  DIAGS_UNUSABLE = 2,     /* the installation or its worker is missing or cannot be asked */
  DIAGS_BAD_PLAN = 3,     /* the plan, or a name in it, is wrong; the text has line and column */
  DIAGS_NOTHING = 4,      /* there is nothing to run: no test is left */
  DIAGS_BUSY = 5,         /* the session has a run already, or a callback waits for its own run */
  DIAGS_TIMEOUT = 6,      /* nothing has come in that time; ask again */
  DIAGS_END = 7,          /* the run is over and all its events were handed out */
  DIAGS_NO_MEMORY = 8,
  DIAGS_FAILED = 9,      /* anything else; the text says what */
  DIAGS_INTERRUPTED = 10 /* diags_interrupt ended the call */
} diags_code;

typedef struct diags_session diags_session;
typedef struct diags_plan diags_plan;
typedef struct diags_run diags_run;

/* Where an installation is and how it is opened. Set `size` to sizeof(diags_options) and all else
   to zero; then change what is to be different. */
typedef struct diags_options {
  size_t size;
  const char* root;     /* the installation folder; NULL: the one that this library belongs to */
  const char* worker;   /* the program diags-worker; NULL: the one that this library belongs to */
  const char* log_file; /* where the core log goes; NULL: nowhere */
  int log_level; /* the core log up to this level is kept: 0 error, 1 warning, 2 info, 3 trace */
  const char* bios_id; /* a firmware identifier instead of the machine's; NULL: the machine's */
  int no_schema_cache; /* not 0: compiled schemas are neither read nor kept */
  double list_seconds; /* how long a provider may take to be listed; 0: 60 seconds. One that takes
                          longer is left out, and the others are asked anew, so that each that hangs
                          costs as much; 32 are left out at most */
} diags_options;

/* What came of all tests of a run. Set `size` to sizeof(diags_result). */
typedef struct diags_result {
  size_t size;
  uint64_t passed;
  uint64_t warned;
  uint64_t failed;
  uint64_t aborted;    /* the caller ended it, or its time was up */
  uint64_t incomplete; /* it says itself that it could not finish */
  uint64_t broken;     /* it ended without a verdict: crashed, hung, refused */
  uint64_t skipped;
  int was_cancelled; /* not 0: by diags_run_cancel */
  int time_was_up;   /* not 0: the plan's deadline came */
} diags_result;

/* Gets one event, a JSON text of one line (docs/events.schema.json) and its length without the zero
   byte. The text lives until the function returns. It is called on a thread of the library's, one
   call at a time; the run waits for it, so that it must not take long. It must not throw or jump.
 */
typedef void (*diags_event_function)(void* context, const char* event, size_t length);

/* The DIAGS_INTERFACE that the library was built with. */
DIAGS_API unsigned diags_interface(void);
/* The version of the product, such as "1.0.0". Never NULL; lives for ever. */
DIAGS_API const char* diags_version(void);
/* A code in a few words. Never NULL; lives for ever. */
DIAGS_API const char* diags_code_text(int code);
/* Why the last call of this thread failed, in one or more lines. Never NULL; empty where it did
   not; lives until this thread's next call. */
DIAGS_API const char* diags_last_error(void);
/* Gives a text back. NULL is allowed. */
DIAGS_API void diags_free(char* text);

/* Opens an installation; nothing of it is loaded yet. `options` may be NULL. `*session` is NULL
   after a failure. DIAGS_UNUSABLE where there is no such folder or worker. */
DIAGS_API diags_code diags_open(const diags_options* options, diags_session** session);
/* NULL is allowed. Plans and runs of the session live on until they are closed. */
DIAGS_API void diags_close(diags_session* session);

/* What the installation offers, as `diags list --json` has it. Starts a worker and takes some
   milliseconds, with a provider that hangs up to `list_seconds`. `*json` is NULL after a failure.
 */
DIAGS_API diags_code diags_list(diags_session* session, char** json);
/* The providers and their states, as `diags providers --json` has it. */
DIAGS_API diags_code diags_providers(diags_session* session, char** json);
/* What is wrong with the installation, as `diags check --json` has it. DIAGS_OK also where
 * something is. */
DIAGS_API diags_code diags_check(diags_session* session, char** json);

/* Ends every call of the session that asks the installation just now: diags_list, diags_providers,
   diags_check, diags_plan_preview, diags_plan_list, and diags_run_start as long as it lists. They
   give DIAGS_INTERRUPTED, and their workers are ended. Returns at once, and says nothing to calls
   that come later, nor to a run that has begun, which diags_run_cancel is for. Since interface 5.
 */
DIAGS_API diags_code diags_interrupt(diags_session* session);

/* A plan of the installation by its name ("quick", "standard", "burn-in"), or the one in a file:
   where the name has a slash, a backslash or ".toml" at its end. `*plan` is NULL after a failure.
 */
DIAGS_API diags_code diags_plan_named(diags_session* session, const char* name, diags_plan** plan);
/* The plan in a text of TOML (docs/plans.md) of that many bytes. */
DIAGS_API diags_code diags_plan_text(diags_session* session, const char* toml, size_t length,
                                     diags_plan** plan);
/* Tests by their names: identifiers, services, devices or patterns; `count` 0: all tests. */
DIAGS_API diags_code diags_plan_tests(diags_session* session, const char* const* names,
                                      size_t count, diags_plan** plan);
/* What the plan would run and how long it takes, in lines for people. Lists the installation. */
DIAGS_API diags_code diags_plan_preview(diags_plan* plan, char** text);
/* Which tests the plan would run, and which it means and passes over, as JSON:
   {"tests": [{"identifier": ..., "group": ..., "repeat": 1, "estimate": 10.0, "timeout": 300.0}],
   "skipped": [{"identifier": ..., "reason": ...}]}; the times in seconds, an estimate of 0 where
   nobody knows. Lists the installation. Since interface 3. */
DIAGS_API diags_code diags_plan_list(diags_plan* plan, char** json);
/* The same plan without some tests, which are named as for diags_plan_tests(), as a new one.
   Since interface 4. */
DIAGS_API diags_code diags_plan_without(diags_plan* plan, const char* const* names, size_t count,
                                        diags_plan** without);
/* NULL is allowed. A run that began with the plan goes on. */
DIAGS_API void diags_plan_close(diags_plan* plan);

/* Lists the installation, checks the plan against it, and begins to run it on a thread of its own.
   With a function all events go to it; without one they wait for diags_run_next(). A session has
   one run at a time: DIAGS_BUSY, until the run is closed. `*run` is NULL after a failure, and then
   nothing has run. */
DIAGS_API diags_code diags_run_start(diags_session* session, diags_plan* plan,
                                     diags_event_function function, void* context, diags_run** run);
/* The next event, waiting up to so many milliseconds for it; below 0: as long as it takes.
   DIAGS_TIMEOUT where none came, DIAGS_END after the last one. Events of 64 MiB may wait; then the
   run stands still until one is taken.
   `*event` is NULL after anything but DIAGS_OK. Of a run with a function: DIAGS_BAD_ARGUMENT. */
DIAGS_API diags_code diags_run_next(diags_run* run, int milliseconds, char** event);
/* All events that wait, one at least, each a line that ends in a line feed: for languages in which
   a call costs more than an event. No more than about a mebibyte at a time. `*length`, which may be
   NULL, gets the text's bytes without the zero byte. All else is as with diags_run_next(), and both
   may be used by turns. Since interface 2. */
DIAGS_API diags_code diags_run_next_many(diags_run* run, int milliseconds, char** events,
                                         size_t* length);
/* Ends the running test in good order and begins no other; called again, ends it at once. Returns
   at once; the events still tell of all of it. */
DIAGS_API diags_code diags_run_cancel(diags_run* run);
/* Waits up to so many milliseconds for the run's end, below 0 as long as it takes, and tells what
   came of it. `result` may be NULL. DIAGS_TIMEOUT where it is not over; DIAGS_FAILED where the run
   itself could not go on. Events that nobody takes hold it up, see diags_run_next(). In the run's
   own function: DIAGS_BUSY. */
DIAGS_API diags_code diags_run_wait(diags_run* run, int milliseconds, diags_result* result);
/* Ends the run at once if it is not over, waits for that, and gives it back. Nothing that it
   started is left. NULL is allowed. In the run's own function: DIAGS_BUSY, and the run goes on. */
DIAGS_API diags_code diags_run_close(diags_run* run);

#ifdef __cplusplus
}
#endif

#endif
