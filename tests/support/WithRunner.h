#pragma once

#include <string>

#include "tests/support/DiagsRunnerAccess.h"
#include "tests/support/World.h"

namespace support {

/// A world (`World`, `Machine` or one of your own) in which the process-wide runner can be asked
/// for. The runner is released, and forgotten, before the world goes.
template <typename Base = World>
class WithRunner : public Base {
 public:
  WithRunner() { DiagsRunnerAccess::forgetRunner(); }
  ~WithRunner() override { DiagsRunnerAccess::forgetRunner(); }

  /// The runner, on the namespace `root`. The first call builds it, which is left out of the
  /// journal; faults by number must be told afterwards.
  DiagsRunner& runner() {
    if (!m_isStarted) {
      DiagsRunner::GetDiagsRunner(this->root->handle());
      this->journal.clear();
      m_isStarted = true;
    }
    return *DiagsRunner::GetDiagsRunner(this->root->handle());
  }

  /// The runner after it has listed the tests; neither is left in the journal.
  DiagsRunner& listed() {
    runner().EnumerateDiagTests("");
    this->journal.clear();
    return runner();
  }

  /// Puts a test into the runner's tables as listed, or as finished by the job `jobID`, without
  /// asking the object model.
  void setListed(const std::string& testID, const std::string& kind = "cmpi") {
    DiagsRunnerAccess::diagNS(runner())[testID] = NZELVOR20::TCIMValue(kind);
  }
  void setFinished(const std::string& testID, const std::string& jobID) {
    DiagsRunnerAccess::finishedTests(runner())[testID] = jobID;
  }

 private:
  bool m_isStarted = false;
};

}  // namespace support
