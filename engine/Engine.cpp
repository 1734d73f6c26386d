#include "engine/Engine.h"

#include <iterator>
#include <mutex>
#include <utility>

#include "engine/identity/ThisMachine.h"
#include "engine/supervisor/Inquiry.h"

namespace engine {

struct Engine::State {
  EngineOptions options;
  Interruption interruption;
  std::mutex mutex;
  Run* run = nullptr;
  unsigned cancelled = 0;  ///< how often, since the last run ended
};

namespace {

void append(std::vector<UnusableProvider>& to, std::vector<UnusableProvider> from) {
  to.insert(to.end(), std::make_move_iterator(from.begin()), std::make_move_iterator(from.end()));
}

/// Who was the first to get none need not be the one who took it all, but is worth a look.
std::string wantOfMemory(const Answers& answers) {
  std::string text = "out of memory";
  if (answers.failures.empty() || answers.failures.front().provider.empty()) return text;
  const Error& where = answers.failures.front();
  return text + ", in " + where.operation + " of " + where.provider;
}

void refuseFailure(const Answers& answers) {
  if (answers.done.status == DoneStatus::kUnusable) {
    throw EngineError(EngineError::Kind::kUnusable, answers.done.text);
  }
  const bool isStarved =
      !answers.failures.empty() && answers.failures.front().cause == Cause::kOutOfMemory;
  if (answers.done.status == DoneStatus::kOutOfMemory || isStarved) {
    throw EngineError(EngineError::Kind::kOutOfMemory, wantOfMemory(answers));
  }
}

Circumstances circumstancesOf(Answers& answers) {
  Circumstances all;
  append(all.unusable, std::move(answers.leftOut));
  all.lines = std::move(answers.lines);
  all.failures = std::move(answers.failures);
  for (Reply& reply : answers.replies) {
    if (auto* const one = std::get_if<UnusableProvider>(&reply)) {
      all.unusable.push_back(std::move(*one));
    } else if (auto* const finding = std::get_if<Finding>(&reply)) {
      all.findings.push_back(std::move(*finding));
    }
  }
  if (!answers.dawdler.empty()) {
    all.findings.push_back({Weight::kWarning, "provider " + answers.dawdler +
                                                  " did not come to an end of cleaning up, and was "
                                                  "ended"});
  }
  return all;
}

}  // namespace

Engine::Engine(EngineOptions options) : m_state(std::make_unique<State>()) {
  m_state->options = std::move(options);
}

Engine::~Engine() = default;

namespace {

/// Asks, and keeps in mind who is to be left out.
Answers askFor(EngineOptions& options, Request request, Interruption& interruption) {
  request.installation = options.installation;
  const WorkerProgram program{options.worker, options.listGrace};
  Answers answers = ask(program, request, options.listSeconds, interruption);
  if (interruption.isInterrupted()) {
    throw EngineError(EngineError::Kind::kInterrupted, "it was ended before there was an answer");
  }
  options.installation.withoutProviders = request.installation.withoutProviders;
  refuseFailure(answers);
  return answers;
}

Request requestFor(Task task) {
  Request request;
  request.task = task;
  return request;
}

/// A question that failed in itself: the framework said why, or the last line of a worker that
/// could not even be loaded.
void refuseUnanswered(const Answers& answers) {
  if (answers.done.status != DoneStatus::kFailed) return;
  std::string text = answers.done.text;
  if (!answers.failures.empty() && !answers.lines.empty()) text += ": " + answers.lines.back().text;
  throw EngineError(EngineError::Kind::kUnusable, text);
}

}  // namespace

Inventory Engine::list(Detail detail) {
  Request request = requestFor(Task::kList);
  request.wantsFacts = detail == Detail::kFacts;
  Answers answers = askFor(m_state->options, std::move(request), m_state->interruption);
  refuseUnanswered(answers);
  Inventory inventory;
  if (detail == Detail::kFacts) inventory.identity = thisMachine();
  for (Reply& reply : answers.replies) {
    if (auto* const test = std::get_if<OfferedTest>(&reply)) {
      inventory.tests.push_back(std::move(*test));
    } else if (auto* const listing = std::get_if<Listing>(&reply)) {
      inventory.listing = std::move(listing->text);
    } else if (auto* const identity = std::get_if<Identity>(&reply)) {
      inventory.identity = std::move(*identity);
    }
  }
  inventory.circumstances = circumstancesOf(answers);
  return inventory;
}

ProvidersAnswer Engine::providers() {
  Answers answers = askFor(m_state->options, requestFor(Task::kProviders), m_state->interruption);
  refuseUnanswered(answers);
  ProvidersAnswer answer;
  for (Reply& reply : answers.replies) {
    if (auto* const provider = std::get_if<ProviderFacts>(&reply)) {
      answer.providers.push_back(std::move(*provider));
    }
  }
  answer.circumstances = circumstancesOf(answers);
  return answer;
}

CheckAnswer Engine::check() {
  Answers answers = askFor(m_state->options, requestFor(Task::kCheck), m_state->interruption);
  CheckAnswer answer;
  if (!answers.done.text.empty()) {
    answers.replies.emplace_back(Finding{Weight::kFault, answers.done.text});
  }
  answer.circumstances = circumstancesOf(answers);
  answer.isFaultless =
      answers.done.status == DoneStatus::kOk && answer.circumstances.unusable.empty();
  return answer;
}

InspectAnswer Engine::inspect(const std::string& className) {
  Request request = requestFor(Task::kInspect);
  request.className = className;
  Answers answers = askFor(m_state->options, std::move(request), m_state->interruption);
  refuseUnanswered(answers);
  InspectAnswer answer;
  for (Reply& reply : answers.replies) {
    if (auto* const line = std::get_if<AnswerLine>(&reply))
      answer.lines.push_back(std::move(*line));
  }
  answer.nothing = std::move(answers.done.text);
  answer.circumstances = circumstancesOf(answers);
  return answer;
}

void Engine::interrupt() { m_state->interruption.interrupt(); }

RunSummary Engine::run(const Plan& plan, const std::vector<OfferedTest>& offer,
                       const RunOptions& options, const std::vector<EventSink*>& sinks) {
  Run::Options runOptions;
  runOptions.program = {m_state->options.worker, static_cast<double>(plan.grace.count()) / 1000};
  runOptions.installation = m_state->options.installation;
  runOptions.start = options.start;
  runOptions.notes = options.notes;
  runOptions.threadedMinutes = options.threadedMinutes;
  runOptions.logLevel = options.logLevel;
  runOptions.listSeconds = m_state->options.listSeconds;
  runOptions.deadline = plan.deadline;
  Run run(std::move(runOptions), Schedule(plan, offer), sinks);
  const auto lend = [this](Run* current) {
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    m_state->run = current;
    for (unsigned i = 0; current != nullptr && i < m_state->cancelled; ++i) current->cancel();
    if (current == nullptr) m_state->cancelled = 0;
  };
  lend(&run);
  try {
    RunSummary summary = run.carryOut();
    lend(nullptr);
    return summary;
  } catch (...) {
    lend(nullptr);
    throw;
  }
}

void Engine::cancel() {
  const std::lock_guard<std::mutex> lock(m_state->mutex);
  ++m_state->cancelled;
  if (m_state->run != nullptr) m_state->run->cancel();
}

}  // namespace engine
