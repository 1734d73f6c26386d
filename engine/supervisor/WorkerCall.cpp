#include "engine/supervisor/WorkerCall.h"

#include <new>
#include <utility>

#include "engine/process/Marked.h"
#include "engine/supervisor/Causes.h"

namespace engine {
namespace {

/// A line of a standard stream may be this long before it becomes several events.
constexpr std::size_t kLongestLine = 64 * 1024;
/// A message of the worker that is longer than this is taken for nonsense.
constexpr std::size_t kLongestMessage = 64 * 1024 * 1024;
/// How long a worker that was asked to end may take, before it is killed.
constexpr double kLastPatience = 0.5;

/// That a run or a test begins is an event of the supervisor's own.
bool mayBeSaid(const Reply& reply) {
  const auto* const happened = std::get_if<Happened>(&reply);
  if (happened == nullptr) return true;
  return !std::holds_alternative<RunStarted>(happened->body) &&
         !std::holds_alternative<TestStarted>(happened->body);
}

Command commandOf(const WorkerProgram& program, const std::string& mark, int record) {
  return {program.path, {}, {{kMarkVariable, mark}}, record};
}

}  // namespace

WorkerCall::WorkerCall(Loop& loop, const WorkerProgram& program, const Request& request,
                       CallListener& listener, Places places)
    : m_listener(listener),
      m_program(program),
      m_mark(newMark()),
      m_record(places == Places::kTold ? PlaceRecord() : PlaceRecord::make()),
      m_replies(kLongestMessage,
                [this](std::string&& line, bool isPart) { take(std::move(line), isPart); }),
      m_output(kLongestLine,
               [this](std::string&& line, bool isPart) {
                 m_listener.onLine(Stream::kOutput, std::move(line), isPart);
               }),
      m_errors(kLongestLine,
               [this](std::string&& line, bool isPart) {
                 m_listener.onLine(Stream::kError, std::move(line), isPart);
               }),
      m_limit(loop),
      m_patience(loop) {
  ChildListener& self = *this;
  m_child.emplace(loop, commandOf(program, m_mark, m_record.descriptor()), self);
  m_child->send(lineOf(Order(request)) + "\n");
}

WorkerCall::~WorkerCall() = default;

void WorkerCall::limitTo(double seconds) {
  m_limit.start(seconds, [this] {
    if (m_done) return;
    m_isTimeUp = true;
    stop();
  });
}

void WorkerCall::stop() {
  if (m_isStopping) return;
  m_place = place();
  m_isStopping = true;
  m_child->send(lineOf(Order(Stop())) + "\n");
  m_patience.start(m_program.grace, [this] { end(); });
}

void WorkerCall::end() {
  m_isEnding = true;
  m_child->askToEnd();
  m_patience.start(kLastPatience, [this] { m_child->kill(); });
}

void WorkerCall::take(std::string&& line, bool isPart) {
  if (m_crash || line.empty()) return;
  if (isPart) return refuse("it sent a message without an end");
  m_replied += line.size();
  if (m_mostReplied != 0 && m_replied > m_mostReplied) {
    return refuse("its answer has no end");
  }
  try {
    Reply reply = replyFrom(line);
    if (auto* const crash = std::get_if<Crashed>(&reply)) return take(std::move(*crash));
    if (!m_protocolError) take(std::move(reply));
  } catch (const ProtocolError& fault) {
    refuse(fault.what());
  } catch (const std::bad_alloc&) {
    refuse("there is not enough memory for a message");
  }
}

void WorkerCall::take(Reply&& reply) {
  if (auto* const hello = std::get_if<Hello>(&reply)) {
    take(*hello);
  } else if (auto* const entered = std::get_if<Entered>(&reply)) {
    take(std::move(*entered));
  } else if (auto* const done = std::get_if<Done>(&reply)) {
    take(std::move(*done));
  } else if (!mayBeSaid(reply)) {
    refuse("it tells of what only its supervisor knows");
  } else if (!m_done) {
    m_listener.onReply(std::move(reply));
  }
}

/// It cannot be relied on to end by itself, or soon: what writes a core file may take its time.
void WorkerCall::take(Crashed&& crash) {
  m_crash = std::move(crash);
  m_patience.start(kLastPatience, [this] { end(); });
}

void WorkerCall::take(Entered&& entered) {
  if (knowsPlace()) m_place = std::move(entered);
}

/// A job that is told to end is looked for in all providers: that says nothing of the place where
/// the test was by then.
bool WorkerCall::knowsPlace() const { return !m_isStopping || m_done; }

Entered WorkerCall::place() const {
  const std::optional<Entered> now = knowsPlace() ? m_record.read() : std::nullopt;
  return now.value_or(m_place);
}

void WorkerCall::take(Hello hello) {
  if (hello.version == kProtocolVersion) return;
  refuse("it speaks version " + std::to_string(hello.version) + " of the protocol, and not " +
         std::to_string(kProtocolVersion) + ": it belongs to another installation");
}

void WorkerCall::take(Done&& done) {
  if (m_done) return;
  m_done = std::move(done);
  if (m_done->status == DoneStatus::kOutOfMemory) {
    m_memoryError = memoryError();
  }
  m_limit.stop();
  if (!m_isEnding) {
    m_patience.start(m_program.grace, [this] {
      m_hasDawdled = true;
      end();
    });
  }
  m_listener.onDone(*m_done);
}

/// What the worker told counts: behind it others are entered, to clean up.
Error WorkerCall::memoryError() const {
  Error error = outOfMemoryError();
  const Entered last = m_done->text.empty() ? m_place : place();
  if (m_done->text.empty() || last.provider == m_done->text) {
    error.provider = last.provider;
    error.operation = last.operation;
  } else {
    error.provider = m_done->text;
  }
  return error;
}

/// A worker that dies in the middle of a word makes no sense either: then what it died of counts.
void WorkerCall::refuse(const std::string& why) {
  if (m_protocolError) return;
  m_protocolError = Error();
  m_protocolError->cause = Cause::kProtocol;
  m_protocolError->text = "the worker's words make no sense: " + why;
  m_patience.start(kLastPatience, [this] { end(); });
}

void WorkerCall::onEnd(const ProcessEnd& end) {
  m_limit.stop();
  m_patience.stop();
  m_replies.finish();
  m_output.finish();
  m_errors.finish();
  if (end.signal != 0) killMarked(m_mark);
  m_listener.onEnd({m_done, errorOf(end), m_hasDawdled});
}

void WorkerCall::blame(Error& error) const {
  if (!error.provider.empty()) return;
  Entered last = place();
  if (last.provider.empty()) return;
  error.provider = std::move(last.provider);
  error.operation = std::move(last.operation);
}

std::optional<Error> WorkerCall::errorOf(const ProcessEnd& end) const {
  std::optional<Error> error = causeOf(end);
  // Where memory ran out was told in front of the answer, or nobody knows.
  if (error && error->cause != Cause::kOutOfMemory) blame(*error);
  return error;
}

/// What the worker said itself counts most, then what we did to it, then how its process ended.
std::optional<Error> WorkerCall::causeOf(const ProcessEnd& end) const {
  if (m_crash) return crashError(*m_crash);
  if (m_memoryError) return m_memoryError;
  if (m_isEnding) {
    if (m_protocolError) return m_protocolError;
    if (m_done) return std::nullopt;
    return m_isTimeUp ? timedOutError() : endedError();
  }
  if (end.signal != 0 || end.status != 0) return endError(end);
  if (m_protocolError) return m_protocolError;
  return m_done ? std::nullopt : std::optional<Error>(endError(end));
}

}  // namespace engine
