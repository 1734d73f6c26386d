#include "engine/supervisor/RunningTest.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "engine/supervisor/Inquiry.h"

namespace engine {
namespace {

Request requestOf(const RunningTest::Course& course, const PlannedRun& run,
                  const std::vector<std::string>& without) {
  Request request;
  request.task = Task::kRun;
  request.installation = course.installation;
  auto& leftOut = request.installation.withoutProviders;
  leftOut.insert(leftOut.end(), without.begin(), without.end());
  request.test = run.test->identifier;
  if (run.settings != nullptr) request.settings = *run.settings;
  request.threadedMinutes = course.threadedMinutes;
  request.logLevel = course.logLevel;
  return request;
}

TestStarted startOf(const PlannedRun& run) {
  TestStarted start;
  start.name = run.test->identifier;
  start.service = run.test->service;
  start.device = run.test->device;
  start.element = run.test->element;
  start.repetition = run.repetition;
  start.estimate = run.estimate;
  return start;
}

Error failureOf(std::string text) {
  Error error;
  error.text = std::move(text);
  return error;
}

double secondsOf(Duration duration) { return static_cast<double>(duration.count()) / 1000; }

/// The second run takes what the caller expects, and as much beyond that as any test may.
double secondsOfThreadedRun(const RunningTest::Course& course, const PlannedRun& run) {
  if (!course.threadedMinutes) return 0;
  return std::max(secondsOf(run.timeout), 3 * 60 * static_cast<double>(*course.threadedMinutes));
}

double limitOf(const RunningTest::Course& course, const PlannedRun& run) {
  return secondsOf(run.timeout) + secondsOfThreadedRun(course, run);
}

}  // namespace

RunningTest::RunningTest(const Course& course, const PlannedRun& run, std::uint64_t id)
    : m_course(course),
      m_run(run),
      m_id(id),
      m_start(std::chrono::steady_clock::now()),
      m_again(course.loop),
      m_limits(run.limits) {
  put(startOf(run));
  begin();
}

RunningTest::~RunningTest() = default;

void RunningTest::begin() {
  CallListener& self = *this;
  try {
    m_call =
        std::make_unique<WorkerCall>(m_course.loop, m_course.program,
                                     requestOf(m_course, m_run, m_without), self, Places::kTold);
    m_call->limitTo(std::min(limitOf(m_course, m_run), m_course.listSeconds));
  } catch (const std::exception& failure) {
    m_isGone = true;
    fail(failureOf(failure.what()));
    finish();
  }
}

void RunningTest::put(Body body, Source source) {
  m_course.events.put(source, m_id, std::move(body));
}

void RunningTest::stop(const std::string& why) {
  if (m_isOver || m_isStopped) return;
  m_isStopped = true;
  put(Message{Severity::kWarning, why, {}});
  m_call->stop();
}

void RunningTest::end() {
  if (m_isGone) return;
  m_isStopped = true;
  m_call->end();
}

/// The listing comes before the test, and that alone has the test's time.
void RunningTest::onReply(Reply&& reply) {
  if (std::holds_alternative<Listing>(reply) && !std::exchange(m_isListed, true)) {
    if (!m_isStopped && !m_call->isStopping()) m_call->limitTo(limitOf(m_course, m_run));
  }
  if (auto* const happened = std::get_if<Happened>(&reply)) take(std::move(*happened));
}

void RunningTest::take(Happened&& happened) {
  if (m_isOver) return;
  if (auto* const ended = std::get_if<Ended>(&happened.body)) {
    m_answer = std::move(*ended);
  } else if (auto* const measurement = std::get_if<Measurement>(&happened.body)) {
    put(m_limits.take(std::move(*measurement)), Source::kProvider);
  } else {
    m_hasError = m_hasError || std::holds_alternative<Error>(happened.body);
    const bool isProviders = happened.source == Source::kProvider;
    put(std::move(happened.body), isProviders ? Source::kProvider : Source::kWorker);
  }
}

void RunningTest::onLine(Stream stream, std::string&& text, bool isPart) {
  OutputLine line{stream, std::move(text), isPart};
  if (m_isOver) {
    m_course.events.put(Source::kProvider, 0, std::move(line));
  } else {
    put(std::move(line), Source::kProvider);
  }
}

void RunningTest::onDone(const Done& done) {
  if (!m_answer && done.status != DoneStatus::kOutOfMemory) {
    fail(failureOf(done.text.empty() ? "it ended without an answer" : done.text));
  }
  if (m_answer) finish();
}

/// A worker that ends badly behind its answer takes nothing back; it is told all the same.
void RunningTest::onEnd(const CallEnd& end) {
  if (isForWantOfOthers(end)) return goOnWithout(*end.error);
  m_isGone = true;
  if (end.hasDawdled) m_course.onDawdling(m_call->place().provider);
  if (!m_isOver) {
    if (end.error) fail(*end.error);
    return finish();
  }
  if (!end.error) return;
  m_course.events.put(
      Source::kEngine, 0,
      Message{Severity::kWarning,
              m_run.test->identifier + ": behind its end " + end.error->text +
                  (end.error->provider.empty() ? std::string() : ", in " + end.error->provider),
              {}});
}

/// Every provider is asked for the listing, and one that dies of it need not be the test's own.
bool RunningTest::isForWantOfOthers(const CallEnd& end) const {
  if (m_isOver || m_isListed || m_isStopped || !end.error) return false;
  const bool isTakenByOne =
      end.done && end.done->status == DoneStatus::kOutOfMemory && !end.done->text.empty();
  if (end.done && !isTakenByOne) return false;
  const std::string& provider = end.error->provider;
  const bool isNew = std::find(m_without.begin(), m_without.end(), provider) == m_without.end();
  return isNew && !provider.empty() && end.error->cause != Cause::kProtocol &&
         m_without.size() < kMostLeftOut;
}

/// The call that has ended is let go of later, not from within its own last word.
void RunningTest::goOnWithout(const Error& error) {
  m_without.push_back(error.provider);
  m_listingErrors.push_back(error);
  put(Message{Severity::kWarning,
              "provider " + error.provider +
                  " is left out of this run: when it was asked for its " + "tests, " + error.text,
              {}});
  m_again.start(0, [this] {
    if (!m_isStopped) return begin();
    m_isGone = true;
    finish();
  });
}

void RunningTest::fail(Error error) {
  if (m_hasError && error.text.empty()) return;
  m_hasError = true;
  put(std::move(error));
}

Ended RunningTest::endOfBroken() const {
  Ended ended;
  ended.outcome = m_isStopped ? Outcome::kAborted : Outcome::kBroken;
  return ended;
}

void RunningTest::finish() {
  m_isOver = true;
  tellTimeUp();
  Ended ended = m_answer ? std::move(*m_answer) : endOfBroken();
  complainAboutLimits(ended);
  // It was the test's own provider after all.
  if (ended.outcome == Outcome::kBroken) {
    for (Error& error : m_listingErrors) put(std::move(error));
  }
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - m_start;
  ended.seconds = elapsed.count();
  const Outcome outcome = ended.outcome;
  put(std::move(ended));
  m_course.onOver(m_run, outcome);
}

void RunningTest::tellTimeUp() {
  if (!m_call || !m_call->isTimeUp()) return;
  put(Message{Severity::kWarning,
              "its time of " + textOf(m_run.timeout) + " was up: it was told to end",
              {}});
}

/// What is measured outside of the limits of a plan is a failure, whatever the test says itself.
void RunningTest::complainAboutLimits(Ended& ended) {
  for (const std::string& complaint : m_limits.complaints()) {
    put(Diagnosis{Verdict::kFail, complaint, m_run.test->element, {}});
  }
  const bool hasVerdict = ended.outcome == Outcome::kPassed || ended.outcome == Outcome::kWarned;
  if (!hasVerdict) return;
  if (m_limits.isBroken()) {
    ended.outcome = Outcome::kFailed;
    ended.text = "Fail";
    ended.brief = "(Fail)";
  }
  for (const Limit& limit : m_limits.unmet()) {
    put(Message{Severity::kWarning,
                "nothing was measured that the limit \"" + limit.measurement + "\" could watch",
                {}});
  }
}

}  // namespace engine
