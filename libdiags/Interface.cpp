#include <cstddef>
#include <cstdlib>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "diags/diags.h"
#include "engine/answers/AnswerJson.h"
#include "engine/installation/PlanShelf.h"
#include "engine/plan/DryRun.h"
#include "engine/plan/PlanFile.h"
#include "engine/plan/Prepared.h"
#include "libdiags/Guard.h"
#include "libdiags/RunThread.h"
#include "libdiags/Session.h"

using libdiags::guarded;
using libdiags::Refusal;
using libdiags::refuseNull;

namespace {

/// Fills `*to`, which is null where that fails.
template <class Object, class Make>
diags_code make(Object** to, const char* name, Make makeObject) noexcept {
  if (to != nullptr) *to = nullptr;
  return guarded([&] {
    refuseNull(to, name);
    *to = makeObject();
    return DIAGS_OK;
  });
}

libdiags::Session& sessionOf(const diags_session* session) {
  refuseNull(session, "session");
  return *session->shared;
}

engine::Inventory listed(libdiags::Session& session) {
  return libdiags::ask(session, [](auto& engine) { return engine.list(engine::Detail::kFacts); });
}

diags_plan* newPlan(const diags_session* session, engine::Plan plan) {
  return new diags_plan{session->shared, std::move(plan)};
}

std::vector<std::string> namesFrom(const char* const* names, std::size_t count) {
  if (count > 0) refuseNull(names, "names");
  std::vector<std::string> all;
  for (std::size_t i = 0; i < count; ++i) {
    if (names[i] == nullptr)
      throw Refusal(DIAGS_BAD_ARGUMENT, "name " + std::to_string(i) + " of \"names\" is NULL");
    all.emplace_back(names[i]);
  }
  return all;
}

engine::Plan planOfTests(std::vector<std::string> names) {
  if (names.empty()) names.emplace_back("*");
  engine::Plan plan;
  plan.groups.emplace_back();
  for (std::string& name : names) {
    plan.groups.back().tests.emplace_back();
    plan.groups.back().tests.back().tests.name = std::move(name);
  }
  return plan;
}

engine::Plan planWithout(engine::Plan plan, std::vector<std::string> names) {
  for (std::string& name : names) {
    plan.excluded.emplace_back();
    plan.excluded.back().name = std::move(name);
  }
  return plan;
}

libdiags::RunThread::Wait waitOf(int milliseconds) {
  if (milliseconds < 0) return std::nullopt;
  return std::chrono::milliseconds(milliseconds);
}

libdiags::RunThread& threadOf(diags_run* run) {
  refuseNull(run, "run");
  return run->thread;
}

void refuseOwnThread(const libdiags::RunThread& run) {
  if (run.isOwnThread())
    throw Refusal(DIAGS_BUSY, "the run's own function cannot wait for the run");
}

diags_code tell(engine::RunSummary summary, diags_result* result) {
  if (result != nullptr) {
    result->passed = summary.outcomes[engine::Outcome::kPassed];
    result->warned = summary.outcomes[engine::Outcome::kWarned];
    result->failed = summary.outcomes[engine::Outcome::kFailed];
    result->aborted = summary.outcomes[engine::Outcome::kAborted];
    result->incomplete = summary.outcomes[engine::Outcome::kIncomplete];
    result->broken = summary.outcomes[engine::Outcome::kBroken];
    result->skipped = summary.outcomes[engine::Outcome::kSkipped];
    result->was_cancelled = summary.wasCancelled ? 1 : 0;
    result->time_was_up = summary.isTimeUp ? 1 : 0;
  }
  if (!summary.sinkFailures.empty()) throw Refusal(DIAGS_FAILED, summary.sinkFailures.front());
  return DIAGS_OK;
}

diags_code codeOf(libdiags::EventQueue::State state) {
  using State = libdiags::EventQueue::State;
  if (state == State::kTimeout) return DIAGS_TIMEOUT;
  return state == State::kEnd ? DIAGS_END : DIAGS_OK;
}

/// The run whose events are asked for.
libdiags::RunThread& askedRun(diags_run* run, const void* to, const char* name) {
  libdiags::RunThread& thread = threadOf(run);
  refuseNull(to, name);
  if (thread.hasFunction())
    throw Refusal(DIAGS_BAD_ARGUMENT, "the run's events go to its function");
  return thread;
}

diags_code handOutNext(libdiags::RunThread& run, int milliseconds, char** event) {
  std::string text;
  const diags_code code = codeOf(run.events().next(waitOf(milliseconds), text));
  if (code != DIAGS_OK) return code;
  try {
    *event = libdiags::handOut(text);
  } catch (...) {
    run.events().putBack({std::move(text)});
    throw;
  }
  return DIAGS_OK;
}

diags_code handOutMany(libdiags::RunThread& run, int milliseconds, char** events,
                       std::size_t* length) {
  constexpr std::size_t kAtATime = 1024 * 1024;
  std::deque<std::string> lines;
  try {
    const diags_code code = codeOf(run.events().nextMany(waitOf(milliseconds), kAtATime, lines));
    if (code != DIAGS_OK) return code;
    std::size_t bytes = 0;
    *events = libdiags::handOut(lines, bytes);
    if (length != nullptr) *length = bytes;
  } catch (...) {
    run.events().putBack(std::move(lines));
    throw;
  }
  return DIAGS_OK;
}

}  // namespace

unsigned diags_interface(void) { return DIAGS_INTERFACE; }

const char* diags_version(void) { return DIAGS_VERSION; }

const char* diags_code_text(int code) {
  static const char* const kTexts[] = {
      "all right",
      "an argument makes no sense",
      "the installation cannot be used",
      "the plan is wrong",
      "there is nothing to run",
      "busy",
      "nothing came in that time",
      "the run is over",
      "out of memory",
      "failed",
      "ended by diags_interrupt",
  };
  constexpr int kCodes = sizeof kTexts / sizeof *kTexts;
  return code >= 0 && code < kCodes ? kTexts[code] : "no code";
}

const char* diags_last_error(void) { return libdiags::lastError(); }

void diags_free(char* text) { std::free(text); }

diags_code diags_open(const diags_options* options, diags_session** session) {
  return make(session, "session",
              [&] { return new diags_session{libdiags::openSession(options)}; });
}

void diags_close(diags_session* session) { delete session; }

diags_code diags_list(diags_session* session, char** json) {
  return make(json, "json",
              [&] { return libdiags::handOut(engine::jsonOf(listed(sessionOf(session)))); });
}

diags_code diags_providers(diags_session* session, char** json) {
  return make(json, "json", [&] {
    const auto answer =
        libdiags::ask(sessionOf(session), [](auto& engine) { return engine.providers(); });
    return libdiags::handOut(engine::jsonOf(answer));
  });
}

diags_code diags_check(diags_session* session, char** json) {
  return make(json, "json", [&] {
    const auto answer =
        libdiags::ask(sessionOf(session), [](auto& engine) { return engine.check(); });
    return libdiags::handOut(engine::jsonOf(answer));
  });
}

diags_code diags_interrupt(diags_session* session) {
  return guarded([&] {
    libdiags::interrupt(sessionOf(session));
    return DIAGS_OK;
  });
}

diags_code diags_plan_named(diags_session* session, const char* name, diags_plan** plan) {
  return make(plan, "plan", [&] {
    const auto& root = sessionOf(session).options.installation.root;
    refuseNull(name, "name");
    return newPlan(session, engine::openPlan(name, engine::shelfOf(root)));
  });
}

diags_code diags_plan_text(diags_session* session, const char* toml, size_t length,
                           diags_plan** plan) {
  return make(plan, "plan", [&] {
    sessionOf(session);
    refuseNull(toml, "toml");
    return newPlan(session, engine::planFrom(std::string_view(toml, length), "the plan"));
  });
}

diags_code diags_plan_tests(diags_session* session, const char* const* names, size_t count,
                            diags_plan** plan) {
  return make(plan, "plan", [&] {
    sessionOf(session);
    return newPlan(session, planOfTests(namesFrom(names, count)));
  });
}

diags_code diags_plan_preview(diags_plan* plan, char** text) {
  return make(text, "text", [&] {
    refuseNull(plan, "plan");
    const auto found = listed(*plan->session);
    return libdiags::handOut(engine::dryRun(plan->plan, found.tests));
  });
}

diags_code diags_plan_list(diags_plan* plan, char** json) {
  return make(json, "json", [&] {
    refuseNull(plan, "plan");
    const auto found = listed(*plan->session);
    return libdiags::handOut(engine::jsonOf(engine::prepare(plan->plan, found.tests), found.tests));
  });
}

diags_code diags_plan_without(diags_plan* plan, const char* const* names, size_t count,
                              diags_plan** without) {
  return make(without, "without", [&] {
    refuseNull(plan, "plan");
    return new diags_plan{plan->session, planWithout(plan->plan, namesFrom(names, count))};
  });
}

void diags_plan_close(diags_plan* plan) { delete plan; }

diags_code diags_run_start(diags_session* session, diags_plan* plan, diags_event_function function,
                           void* context, diags_run** run) {
  return make(run, "run", [&] {
    sessionOf(session);
    refuseNull(plan, "plan");
    if (plan->session != session->shared)
      throw Refusal(DIAGS_BAD_ARGUMENT, "the plan belongs to another session");
    return new diags_run{{session->shared, plan->plan, {function, context}}};
  });
}

diags_code diags_run_next(diags_run* run, int milliseconds, char** event) {
  if (event != nullptr) *event = nullptr;
  return guarded([&] { return handOutNext(askedRun(run, event, "event"), milliseconds, event); });
}

diags_code diags_run_next_many(diags_run* run, int milliseconds, char** events, size_t* length) {
  if (events != nullptr) *events = nullptr;
  if (length != nullptr) *length = 0;
  return guarded(
      [&] { return handOutMany(askedRun(run, events, "events"), milliseconds, events, length); });
}

diags_code diags_run_cancel(diags_run* run) {
  return guarded([&] {
    threadOf(run).cancel();
    return DIAGS_OK;
  });
}

diags_code diags_run_wait(diags_run* run, int milliseconds, diags_result* result) {
  return guarded([&] {
    libdiags::RunThread& thread = threadOf(run);
    // Members that come later are not asked for: a host that was built before them has none.
    if (result != nullptr &&
        result->size < offsetof(diags_result, time_was_up) + sizeof result->time_was_up)
      throw Refusal(DIAGS_BAD_ARGUMENT, "the result's size is not that of diags_result");
    refuseOwnThread(thread);
    auto summary = thread.wait(waitOf(milliseconds));
    return summary ? tell(std::move(*summary), result) : DIAGS_TIMEOUT;
  });
}

diags_code diags_run_close(diags_run* run) {
  return guarded([&] {
    if (run != nullptr) refuseOwnThread(run->thread);
    delete run;
    return DIAGS_OK;
  });
}
