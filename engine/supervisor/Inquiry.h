#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "engine/events/Event.h"
#include "engine/protocol/Messages.h"
#include "engine/supervisor/WorkerCall.h"

namespace engine {

/// So many providers are left out at most, of a listing and of a test. The name comes from the
/// process that they are in: one that invents a new one each time must come to an end.
constexpr std::size_t kMostLeftOut = 32;

/// What a worker answered to a question about the installation.
struct Answers {
  std::vector<Reply> replies;
  Done done;
  /// Providers that ended the worker, or never came back, and were left out of the answer.
  std::vector<UnusableProvider> leftOut;
  /// The last one that was cleaning up when the worker was ended for it; empty for none.
  std::string dawdler;
  /// Why there is no answer although no provider is left to leave out.
  std::vector<Error> failures;
  /// What was written to standard output and standard error meanwhile.
  std::vector<OutputLine> lines;
};

/// Ends questions. Every function may be called from any thread.
class Interruption {
 public:
  /// The question that is being asked ends at once, and so does each that is asked from now on.
  void interrupt();
  bool isInterrupted() const;

  /// What ends the question: called once, on any thread, unless it is taken back before.
  void lend(std::function<void()> end);
  void takeBack();

 private:
  mutable std::mutex m_mutex;
  bool m_isInterrupted = false;
  std::function<void()> m_end;
};

/// Asks a worker of its own. A provider that crashes it or is not done within `seconds` is left
/// out, and what is left is asked anew. `request.installation.withoutProviders` gets those too.
/// Where it is interrupted, there is no answer, and the worker is gone.
/// Throws `std::runtime_error` where no worker can be started.
Answers ask(const WorkerProgram& program, Request& request, double seconds,
            Interruption& interruption);

}  // namespace engine
