#include "libdiags/RunThread.h"

#include <utility>

#include "engine/answers/Notes.h"
#include "engine/events/EventLine.h"
#include "engine/plan/DryRun.h"
#include "libdiags/Guard.h"

namespace libdiags {
namespace {

constexpr std::size_t kMostWaiting = 64 * 1024 * 1024;

thread_local const RunThread* runOfThisThread = nullptr;

engine::Engine::RunOptions optionsFor(const engine::Inventory& found) {
  engine::Engine::RunOptions options;
  options.start.version = DIAGS_VERSION;
  options.start.host = found.identity.host;
  options.start.firmware = found.identity.firmware;
  options.start.parts = found.identity.parts;
  options.notes = engine::notesOf(found.circumstances);
  return options;
}

}  // namespace

/// Hands each event on, to the function or into the queue.
class RunThread::Sink : public engine::EventSink {
 public:
  Sink(const Listener& listener, EventQueue& events) : m_listener(listener), m_events(events) {}

  void take(const engine::Event& event) override {
    std::string line = engine::lineOf(event);
    if (m_listener.function != nullptr) {
      m_listener.function(m_listener.context, line.c_str(), line.size());
    } else {
      m_events.push(std::move(line));
    }
  }

 private:
  const Listener& m_listener;
  EventQueue& m_events;
};

RunThread::Turn::Turn(Session& of) : session(of) {
  if (session.hasRun.exchange(true))
    throw Refusal(DIAGS_BUSY, "the session has a run, which has to be closed before another one");
}

RunThread::RunThread(std::shared_ptr<Session> session, const engine::Plan& plan, Listener listener)
    : m_session(std::move(session)),
      m_turn(*m_session),
      m_engine(m_session->options),
      m_plan(plan),
      m_listener(listener),
      m_events(kMostWaiting) {
  engine::Inventory found = listed();
  engine::dryRun(m_plan, found.tests);  // what is wrong with the plan is told before anything runs
  m_thread = std::thread([this, found = std::move(found)] { carryOut(found); });
}

engine::Inventory RunThread::listed() {
  const Asking asking(*m_session, m_engine);
  return m_engine.list(engine::Detail::kFacts);
}

RunThread::~RunThread() {
  m_events.discard();
  m_engine.cancel();
  m_engine.cancel();
  m_thread.join();
}

bool RunThread::isOwnThread() const noexcept { return runOfThisThread == this; }

void RunThread::cancel() {
  // What nobody takes any more must not hold up the end.
  m_events.open();
  m_engine.cancel();
}

std::optional<engine::RunSummary> RunThread::wait(Wait wait) {
  std::unique_lock<std::mutex> lock(m_mutex);
  const auto isOver = [this] { return m_isOver; };
  if (!wait) {
    m_over.wait(lock, isOver);
  } else if (!m_over.wait_for(lock, *wait, isOver)) {
    return std::nullopt;
  }
  if (m_failure) std::rethrow_exception(m_failure);
  return m_summary;
}

void RunThread::carryOut(const engine::Inventory& found) {
  runOfThisThread = this;
  try {
    Sink sink(m_listener, m_events);
    conclude(m_engine.run(m_plan, found.tests, optionsFor(found), {&sink}), nullptr);
  } catch (...) {
    conclude(std::nullopt, std::current_exception());
  }
}

void RunThread::conclude(std::optional<engine::RunSummary> summary, std::exception_ptr failure) {
  m_events.end();
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_summary = std::move(summary);
  m_failure = std::move(failure);
  m_isOver = true;
  m_over.notify_all();
}

}  // namespace libdiags
