#include "engine/supervisor/Inquiry.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "engine/process/Loop.h"
#include "engine/process/ProgramError.h"

namespace engine {
namespace {

/// So much of what is written meanwhile is kept.
constexpr std::size_t kMostOutput = 4 * 1024 * 1024;

/// An answer has a few KB for each test.
constexpr std::size_t kMostReplies = 64 * 1024 * 1024;

/// For as long as the question is being asked.
class Lent {
 public:
  Lent(Interruption& to, std::function<void()> end) : m_to(to) { to.lend(std::move(end)); }
  Lent(const Lent&) = delete;
  Lent& operator=(const Lent&) = delete;
  ~Lent() { m_to.takeBack(); }

 private:
  Interruption& m_to;
};

/// One question to one worker.
class Inquiry : private CallListener {
 public:
  void ask(const WorkerProgram& program, const Request& request, double seconds, Places places,
           Interruption& interruption) {
    Loop loop;
    CallListener& self = *this;
    WorkerCall call(loop, program, request, self, places);
    call.limitTo(seconds);
    call.limitReplies(kMostReplies);
    const auto end = [this, &call] {
      if (!m_end) call.end();
    };
    const Lent lent(interruption, [&loop, &end] { loop.post(end); });
    loop.runUntil([this] { return m_end.has_value(); });
    m_place = call.place();
  }

  std::vector<Reply> replies;
  std::vector<OutputLine> lines;
  const CallEnd& end() const { return *m_end; }
  const Entered& place() const { return m_place; }

 private:
  void onReply(Reply&& reply) override { replies.push_back(std::move(reply)); }
  void onLine(Stream stream, std::string&& text, bool isPart) override {
    if (m_kept > kMostOutput) return;
    m_kept += text.size() + sizeof(OutputLine);
    if (m_kept > kMostOutput) text = "(there was more, which is left out)";
    lines.push_back({stream, std::move(text), isPart});
  }
  void onEnd(const CallEnd& end) override { m_end = end; }

  std::size_t m_kept = 0;
  std::optional<CallEnd> m_end;
  Entered m_place;
};

/// Where memory was scarce to begin with, it is nobody's.
bool isProvidersFault(const CallEnd& end) {
  if (!end.error) return false;
  return !end.done || (end.done->status == DoneStatus::kOutOfMemory && !end.done->text.empty());
}

const char* wordFor(Cause cause) { return cause == Cause::kTimedOut ? "hangs" : "crashed"; }

/// A provider that the worker was in when it ended without an answer.
bool leaveOut(const Error& error, Request& request, Answers& answers) {
  auto& without = request.installation.withoutProviders;
  const bool isKnown = std::find(without.begin(), without.end(), error.provider) != without.end();
  if (error.provider.empty() || isKnown) return false;
  if (answers.leftOut.size() == kMostLeftOut) return false;
  without.push_back(error.provider);
  const std::string where = error.operation.empty() ? "" : ", in " + error.operation;
  answers.leftOut.push_back({error.provider, wordFor(error.cause), error.text + where});
  return true;
}

}  // namespace

void Interruption::interrupt() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_isInterrupted = true;
  if (m_end) std::exchange(m_end, nullptr)();
}

bool Interruption::isInterrupted() const {
  const std::lock_guard<std::mutex> lock(m_mutex);
  return m_isInterrupted;
}

void Interruption::lend(std::function<void()> end) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_end = std::move(end);
  if (m_isInterrupted) std::exchange(m_end, nullptr)();
}

void Interruption::takeBack() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_end = nullptr;
}

Answers ask(const WorkerProgram& program, Request& request, double seconds,
            Interruption& interruption) {
  Answers answers;
  Places places = Places::kLookedUp;
  for (;;) {
    Inquiry inquiry;
    try {
      inquiry.ask(program, request, seconds, places, interruption);
    } catch (const ProgramError& failure) {
      answers.done = {DoneStatus::kUnusable, failure.what()};
      return answers;
    }
    if (interruption.isInterrupted()) return answers;
    const CallEnd& end = inquiry.end();
    // Whose the nonsense is has to be told in order.
    const bool isNonsense = !end.done && end.error && end.error->cause == Cause::kProtocol;
    if (isNonsense && std::exchange(places, Places::kTold) == Places::kLookedUp) continue;
    if (isProvidersFault(end) && leaveOut(*end.error, request, answers)) continue;
    answers.replies = std::move(inquiry.replies);
    answers.lines = std::move(inquiry.lines);
    if (end.done) answers.done = *end.done;
    if (end.error) answers.failures.push_back(*end.error);
    if (!end.done) answers.done = {DoneStatus::kFailed, end.error ? end.error->text : ""};
    if (end.hasDawdled) answers.dawdler = inquiry.place().provider;
    return answers;
  }
}

}  // namespace engine
