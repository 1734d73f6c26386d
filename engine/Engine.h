#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "engine/Offer.h"
#include "engine/events/EventSink.h"
#include "engine/plan/Plan.h"
#include "engine/protocol/Messages.h"
#include "engine/supervisor/Run.h"

/// Finds and runs the diagnostics of an installation, each in a process of its own: whatever a
/// provider does, the caller goes on. The caller's process loads no provider.
namespace engine {

/// The installation cannot be asked at all.
class EngineError : public std::runtime_error {
 public:
  enum class Kind : std::uint8_t { kUnusable, kOutOfMemory, kInterrupted };
  EngineError(Kind kind, const std::string& text) : std::runtime_error(text), m_kind(kind) {}
  Kind kind() const { return m_kind; }

 private:
  Kind m_kind;
};

/// What comes with every answer.
struct Circumstances {
  std::vector<Finding> findings;           ///< what makes the answer less than it could be
  std::vector<UnusableProvider> unusable;  ///< in the order in which they were found
  std::vector<OutputLine> lines;           ///< what providers wrote meanwhile
  std::vector<Error> failures;             ///< of a worker that ended badly although it answered
};

struct Inventory {
  std::string listing;  ///< the runner's own text
  std::vector<OfferedTest> tests;
  Identity identity;  ///< with `Detail::kFacts`
  Circumstances circumstances;
};

enum class Detail : std::uint8_t {
  kNames,  ///< identifiers and their parts
  kFacts   ///< estimates, characteristics, settings and the machine's identity too
};

struct ProvidersAnswer {
  std::vector<ProviderFacts> providers;
  Circumstances circumstances;
};

struct CheckAnswer {
  Circumstances circumstances;  ///< its findings are the answer
  bool isFaultless = false;
};

struct InspectAnswer {
  std::vector<AnswerLine> lines;
  std::string nothing;  ///< where there are no lines: why
  Circumstances circumstances;
};

struct EngineOptions {
  InstallationOptions installation;
  std::string worker;       ///< the path of the program diags-worker
  double listSeconds = 60;  ///< how long a provider may take for the listing before it is left out
  double listGrace = 1;     ///< and how long to clean up, in seconds
};

/// Belongs to one thread, apart from `cancel` and `interrupt`.
class Engine {
 public:
  explicit Engine(EngineOptions options);
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;
  ~Engine();

  /// All throw `EngineError`, and `std::runtime_error` for want of a process. A provider
  /// that crashes or hangs is named among `unusable` and left out from then on, by runs too.
  Inventory list(Detail detail);
  ProvidersAnswer providers();
  CheckAnswer check();
  InspectAnswer inspect(const std::string& className);

  /// From any thread: whichever of these four is under way ends at once, with `kInterrupted`, and
  /// so does each one from now on. A run does not heed it.
  void interrupt();

  struct RunOptions {
    RunStarted start;  ///< what the first event says; the number of tests is filled in
    std::optional<std::uint64_t> threadedMinutes;
    std::vector<Message> notes;  ///< what the reader is to know: told behind the first event
    int logLevel = 1;            ///< the core log up to this level becomes events; -1: none of it
  };

  /// Runs the plan on what `list` with `Detail::kFacts` found. Every event goes to each of the
  /// sinks, on this thread. Throws `PlanError` before anything has run.
  RunSummary run(const Plan& plan, const std::vector<OfferedTest>& offer, const RunOptions& options,
                 const std::vector<EventSink*>& sinks);

  /// From any thread: a run in progress ends, its tests in good order; called again, at once.
  /// Before a run, it makes the next one end as it begins.
  void cancel();

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

}  // namespace engine
