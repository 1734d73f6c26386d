#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "diags/diags.h"
#include "engine/Engine.h"
#include "engine/plan/PlanFile.h"

namespace libdiags {

/// An installation, opened. Never changes but for whether a run is on its way; sessions, plans and
/// runs share it.
struct Session {
  engine::EngineOptions options;
  std::atomic<bool> hasRun{false};

  /// Engines are cheap, and each belongs to one thread: every call has one of its own.
  engine::Engine engine() const { return engine::Engine(options); }
};

/// Throws `Refusal` where an option makes no sense, `engine::EngineError` where there is no
/// installation.
std::shared_ptr<Session> openSession(const diags_options* options);

}  // namespace libdiags

struct diags_session {
  std::shared_ptr<libdiags::Session> shared;
};

struct diags_plan {
  std::shared_ptr<libdiags::Session> session;
  engine::Plan plan;
};
