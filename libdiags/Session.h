#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "diags/diags.h"
#include "engine/Engine.h"
#include "engine/plan/PlanFile.h"

namespace libdiags {

/// An installation, opened. Never changes but for whether a run is on its way, and who asks;
/// sessions, plans and runs share it.
struct Session {
  engine::EngineOptions options;
  std::atomic<bool> hasRun{false};
  std::mutex mutex;
  std::vector<engine::Engine*> asking;
};

/// While it is there, the session may end what the engine asks.
class Asking {
 public:
  Asking(Session& session, engine::Engine& engine);
  Asking(const Asking&) = delete;
  Asking& operator=(const Asking&) = delete;
  ~Asking();

 private:
  Session& m_session;
  engine::Engine& m_engine;
};

/// Asks the installation. Engines are cheap, and each belongs to one thread: every call has one of
/// its own.
template <class Question>
auto ask(Session& session, Question question) {
  engine::Engine engine(session.options);
  const Asking asking(session, engine);
  return question(engine);
}

/// Ends whatever is being asked now.
void interrupt(Session& session);

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
