#pragma once

#include <memory>
#include <string>
#include <vector>

#include "diags/diags.h"

/// Objects of the C interface that close themselves.
namespace host {

struct Closer {
  void operator()(diags_session* session) const { diags_close(session); }
  void operator()(diags_plan* plan) const { diags_plan_close(plan); }
  void operator()(diags_run* run) const { diags_run_close(run); }
};
using OwnedSession = std::unique_ptr<diags_session, Closer>;
using OwnedPlan = std::unique_ptr<diags_plan, Closer>;
using OwnedRun = std::unique_ptr<diags_run, Closer>;

/// Of the installation with a sick provider and a sound one.
inline diags_options options() {
  diags_options all = {};
  all.size = sizeof all;
  all.root = DIAGS_SICK_INSTALLATION;
  all.worker = DIAGS_WORKER;
  all.no_schema_cache = 1;
  return all;
}

inline OwnedSession open() {
  const diags_options all = options();
  diags_session* session = nullptr;
  diags_open(&all, &session);
  return OwnedSession(session);
}

inline OwnedPlan planOf(const OwnedSession& session, const std::string& toml) {
  diags_plan* plan = nullptr;
  diags_plan_text(session.get(), toml.data(), toml.size(), &plan);
  return OwnedPlan(plan);
}

inline OwnedRun start(const OwnedSession& session, const OwnedPlan& plan,
                      diags_event_function function = nullptr, void* context = nullptr) {
  diags_run* run = nullptr;
  diags_run_start(session.get(), plan.get(), function, context, &run);
  return OwnedRun(run);
}

/// A text that was handed out, given back.
inline std::string taken(char* text) {
  std::string copy = text == nullptr ? std::string() : std::string(text);
  diags_free(text);
  return copy;
}

inline std::vector<std::string> allEvents(const OwnedRun& run) {
  std::vector<std::string> events;
  char* event = nullptr;
  while (diags_run_next(run.get(), -1, &event) == DIAGS_OK) events.push_back(taken(event));
  return events;
}

}  // namespace host
