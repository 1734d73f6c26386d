/* A host in C: lists this machine's tests, runs those that are named and says what came of them:
     host ROOT [TEST...]       ROOT: the installation; "" for the one that the library belongs to */
#include <stdio.h>
#include <string.h>

#include "diags/diags.h"

static int fail(const char* what) {
  fprintf(stderr, "host: %s: %s\n", what, diags_last_error());
  return 1;
}

/* Each event is a line of JSON; a real host gives it to its parser. */
static int follow(diags_run* run) {
  diags_result result = {.size = sizeof result};
  char* event;
  while (diags_run_next(run, -1, &event) == DIAGS_OK) {
    if (strstr(event, "\"end\"")) puts(event);
    diags_free(event);
  }
  if (diags_run_wait(run, -1, &result) != DIAGS_OK) return fail("the run");
  printf(
      "passed: %d, failed: %d, others: %d\n", (int)result.passed, (int)result.failed,
      (int)(result.warned + result.aborted + result.incomplete + result.broken + result.skipped));
  return result.failed > 0;
}

static int run_tests(diags_session* session, const char* const* tests, size_t count) {
  diags_plan* plan;
  diags_run* run;
  int status;
  if (diags_plan_tests(session, tests, count, &plan) != DIAGS_OK) return fail("the plan");
  status = diags_run_start(session, plan, NULL, NULL, &run) == DIAGS_OK ? follow(run) : fail("run");
  diags_run_close(run);
  diags_plan_close(plan);
  return status;
}

static int list_tests(diags_session* session) {
  char* json;
  if (diags_list(session, &json) != DIAGS_OK) return fail("the listing");
  puts(json);
  diags_free(json);
  return 0;
}

int main(int argc, char** argv) {
  diags_options options = {.size = sizeof options};
  diags_session* session;
  int status;
  options.root = argc > 1 && argv[1][0] ? argv[1] : NULL;
  if (diags_open(&options, &session) != DIAGS_OK) return fail("the installation");
  status = argc > 2 ? run_tests(session, (const char* const*)argv + 2, (size_t)argc - 2)
                    : list_tests(session);
  diags_close(session);
  return status;
}
