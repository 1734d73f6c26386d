#pragma once

#include <chrono>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "diags/diags.h"
#include "libdiags/EventQueue.h"
#include "libdiags/Session.h"

namespace libdiags {

/// Where the events of a run go.
struct Listener {
  diags_event_function function = nullptr;  ///< null: they wait to be asked for
  void* context = nullptr;
};

/// A run on a thread of its own. Every function but the destructor may be called from any thread.
class RunThread {
 public:
  using Wait = std::optional<std::chrono::milliseconds>;  ///< none: for ever

  /// Lists, and holds the plan to what there is: throws as `Engine::list` and `Engine::run` do, and
  /// `Refusal` where the session has a run.
  RunThread(std::shared_ptr<Session> session, const engine::Plan& plan, Listener listener);
  RunThread(const RunThread&) = delete;
  RunThread& operator=(const RunThread&) = delete;
  /// Ends the run at once. Not on the run's own thread.
  ~RunThread();

  /// Whether the caller is the run's own function.
  bool isOwnThread() const noexcept;
  bool hasFunction() const { return m_listener.function != nullptr; }
  EventQueue& events() { return m_events; }
  void cancel();
  /// What came of it; nothing where it is not over by then. Throws what the run threw.
  std::optional<engine::RunSummary> wait(Wait wait);

 private:
  class Sink;
  /// A session's one run, from here to the end.
  struct Turn {
    explicit Turn(Session& session);
    ~Turn() { session.hasRun = false; }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    Session& session;
  };

  engine::Inventory listed();
  void carryOut(const engine::Inventory& found);
  void conclude(std::optional<engine::RunSummary> summary, std::exception_ptr failure);

  std::shared_ptr<Session> m_session;
  Turn m_turn;
  engine::Engine m_engine;
  engine::Plan m_plan;
  Listener m_listener;
  EventQueue m_events;
  std::mutex m_mutex;
  std::condition_variable m_over;
  bool m_isOver = false;
  std::optional<engine::RunSummary> m_summary;
  std::exception_ptr m_failure;
  std::thread m_thread;
};

}  // namespace libdiags

struct diags_run {
  libdiags::RunThread thread;
};
