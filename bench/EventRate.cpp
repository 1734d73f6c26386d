#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "bench/ProcessFigures.h"
#include "diags/diags.h"

namespace {

constexpr double kGoal = 100'000;
using Clock = std::chrono::steady_clock;

/// What a host's function has heard, and the time of the thread that it is called on.
struct Heard {
  std::size_t events = 0, bytes = 0;
  double firstSeconds = 0, lastSeconds = 0;  ///< of processor time
  Clock::time_point first, last;
};

void hear(void* context, const char*, std::size_t length) {
  Heard& heard = *static_cast<Heard*>(context);
  heard.last = Clock::now();
  heard.lastSeconds = bench::threadSeconds();
  if (heard.events == 0) {
    heard.first = heard.last;
    heard.firstSeconds = heard.lastSeconds;
  }
  ++heard.events;
  heard.bytes += length;
}

int fail() {
  std::fprintf(stderr, "event_rate: %s\n", diags_last_error());
  return 1;
}

}  // namespace

/// Half a million lines of a provider, from its worker through the engine to a function of the C
/// interface, as JSON: how many a second of the time that the thread was at work, and by the clock.
int main() {
  setenv("SICKNESS", "polling:chatter", 1);
  diags_options options = {};
  options.size = sizeof options;
  options.root = BENCH_INSTALLATION;
  diags_session* session = nullptr;
  diags_plan* plan = nullptr;
  diags_run* run = nullptr;
  const char* const test = "SICK Test";
  Heard heard;
  if (diags_open(&options, &session) != DIAGS_OK) return fail();
  if (diags_plan_tests(session, &test, 1, &plan) != DIAGS_OK) return fail();
  if (diags_run_start(session, plan, hear, &heard, &run) != DIAGS_OK) return fail();
  if (diags_run_wait(run, -1, nullptr) != DIAGS_OK) return fail();
  diags_run_close(run);
  diags_plan_close(plan);
  diags_close(session);
  const double rate = static_cast<double>(heard.events) / (heard.lastSeconds - heard.firstSeconds);
  const double wall = std::chrono::duration<double>(heard.last - heard.first).count();
  std::printf("%zu events of %zu bytes: %.0f events/s (goal: at least %.0f)%s, by the clock %.0f\n",
              heard.events, heard.bytes / heard.events, rate, kGoal,
              rate >= kGoal ? "" : "  MISSED", static_cast<double>(heard.events) / wall);
  return rate >= kGoal ? 0 : 1;
}
