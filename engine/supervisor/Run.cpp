#include "engine/supervisor/Run.h"

#include <algorithm>
#include <utility>

namespace engine {
namespace {

/// From the worst to the best: what a run as a whole came to.
constexpr Outcome kBadToGood[] = {Outcome::kFailed,     Outcome::kBroken, Outcome::kAborted,
                                  Outcome::kIncomplete, Outcome::kWarned, Outcome::kPassed};

TestStarted startOf(const OfferedTest& test) {
  TestStarted start;
  start.name = test.identifier;
  start.service = test.service;
  start.device = test.device;
  start.element = test.element;
  start.estimate = test.estimate;
  return start;
}

}  // namespace

Run::Run(Options options, Schedule schedule, std::vector<EventSink*> sinks)
    : m_options(std::move(options)),
      m_schedule(std::move(schedule)),
      m_events(std::move(sinks)),
      m_deadline(m_loop),
      m_recurrence(m_loop),
      m_course{m_loop,
               m_events,
               m_options.program,
               m_options.installation,
               m_options.threadedMinutes,
               m_options.listSeconds,
               m_options.logLevel,
               [this](const PlannedRun& run, Outcome outcome) { note(run, outcome); },
               [this](const std::string& provider) { noteDawdler(provider); }} {}

Run::~Run() = default;

RunSummary Run::carryOut() {
  m_start = std::chrono::steady_clock::now();
  const std::uint64_t skipped = m_schedule.prepared().skipped.size();
  m_options.start.tests = m_schedule.total().value_or(0) + skipped;
  m_events.put(Source::kEngine, 0, m_options.start);
  for (const Message& note : m_options.notes) m_events.put(Source::kEngine, 0, note);
  tellSkipped();
  if (m_options.deadline) {
    m_deadline.start(static_cast<double>(m_options.deadline->count()) / 1000, [this] {
      if (m_schedule.isOver(elapsed())) return;  // what still cleans up has its verdict
      m_summary.isTimeUp = true;
      stopAll("the time of the whole run was up: it was told to end");
    });
  }
  m_loop.runUntil([this] { return step(); });
  tellMissing();
  tellUnbegun();
  Ended ended;
  ended.outcome = overallOutcome();
  ended.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
  m_events.put(Source::kEngine, 0, ended);
  m_summary.sinkFailures = m_events.failures();
  return m_summary;
}

void Run::cancel() {
  m_loop.post([this] { obeyCancel(); });
}

void Run::obeyCancel() {
  if (!m_summary.wasCancelled) {
    m_summary.wasCancelled = true;
    return stopAll("the user ended the run: it was told to end");
  }
  for (const auto& test : m_running) test->end();
}

void Run::stopAll(const std::string& why) {
  m_schedule.stop();
  for (const auto& test : m_running) test->stop(why);
}

/// Whether all is over. Tests go only here, never while one of them calls back.
bool Run::step() {
  m_running.erase(std::remove_if(m_running.begin(), m_running.end(),
                                 [](const auto& test) { return test->isGone(); }),
                  m_running.end());
  while (const auto run = m_schedule.next(elapsed())) begin(*run);
  // A test that could not even be started is gone by now, and another one may begin.
  if (std::any_of(m_running.begin(), m_running.end(),
                  [](const auto& test) { return test->isGone(); })) {
    m_recurrence.start(0, nullptr);
    return false;
  }
  return m_running.empty() && m_schedule.isOver(elapsed());
}

void Run::begin(const PlannedRun& run) {
  ++m_begun;
  m_lastNumber = std::max(m_lastNumber, run.number);
  m_tests.insert(run.test);
  m_running.push_back(std::make_unique<RunningTest>(m_course, run, m_skipped + run.number));
}

/// They come first, so that their numbers stay free where nobody knows how many runs there will be.
void Run::tellSkipped() {
  for (const SkippedTest& skipped : m_schedule.prepared().skipped) {
    skip(++m_skipped, m_schedule.offer()[skipped.test], skipped.reason);
  }
}

void Run::skip(std::uint64_t id, const OfferedTest& test, const std::string& reason) {
  m_events.put(Source::kEngine, id, startOf(test));
  Ended ended;
  ended.outcome = Outcome::kSkipped;
  ended.text = reason;
  m_events.put(Source::kEngine, id, ended);
  ++m_summary.outcomes[Outcome::kSkipped];
}

/// What a reader would look for in vain.
void Run::tellMissing() {
  const std::uint64_t total = m_schedule.total().value_or(0);
  if (!wasStopped() || total <= m_begun) return;
  const std::uint64_t missing = total - m_begun;
  m_events.put(Source::kEngine, 0,
               Message{Severity::kWarning,
                       std::to_string(missing) + (missing == 1 ? " test was" : " tests were") +
                           " not begun any more",
                       {}});
}

/// Once each, however often it was to be repeated: that may be millions of times.
void Run::tellUnbegun() {
  std::uint64_t id = m_skipped + m_lastNumber;
  for (const PreparedGroup& group : m_schedule.prepared().groups) {
    for (const PreparedTest& one : group.tests) {
      const OfferedTest& test = m_schedule.offer()[one.test];
      if (m_tests.insert(&test).second) skip(++id, test, reasonOfUnbegun());
    }
  }
}

std::string Run::reasonOfUnbegun() const {
  if (m_summary.wasCancelled) return "the user ended the run before it began";
  if (m_summary.isTimeUp) return "the time of the whole run was up before it began";
  return "the run was over before it began";
}

void Run::note(const PlannedRun& run, Outcome outcome) {
  ++m_summary.outcomes[outcome];
  m_schedule.ended(run.number, outcome == Outcome::kFailed);
}

void Run::noteDawdler(const std::string& provider) {
  if (!m_dawdlers.insert(provider).second) return;
  const std::string who = provider.empty() ? "a worker" : "provider " + provider;
  m_events.put(
      Source::kEngine, 0,
      Message{
          Severity::kWarning, who + " did not come to an end of cleaning up, and was ended", {}});
}

Duration Run::elapsed() const {
  return std::chrono::duration_cast<Duration>(std::chrono::steady_clock::now() - m_start);
}

bool Run::wasStopped() const { return m_summary.wasCancelled || m_summary.isTimeUp; }

/// A run that was stopped is no pass, whatever those of its tests say that came to their ends.
Outcome Run::overallOutcome() const {
  for (const Outcome outcome : kBadToGood) {
    const auto count = m_summary.outcomes.find(outcome);
    const bool isThere = count != m_summary.outcomes.end() && count->second > 0;
    if (isThere || (outcome == Outcome::kAborted && wasStopped())) return outcome;
  }
  return Outcome::kSkipped;
}

}  // namespace engine
