#include "host/ThreadedRun.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <thread>

#include "framework/TRootObject.h"
#include "host/ExitStatus.h"
#include "host/Messages.h"

namespace host {
namespace {

/// An error in the core log reaches its file at once, with all that was logged before.
[[noreturn]] void endProcess(const std::string& why) {
  if (NZELVOR20::ILogger* const log = NZELVOR20::TRootObject::GetCoreLogger()) log->Log(0, why);
  std::cout << "\n";
  reportError(why);
  std::fflush(nullptr);
  std::_Exit(static_cast<int>(ExitStatus::kCouldNotRun));
}

void runOrEndProcess() noexcept {
  try {
    DiagsRunner::ExecuteInThread(nullptr);
  } catch (...) {
    endProcess("the threaded run ended by an exception: " + currentExceptionText());
  }
}

}  // namespace

void runAgainOnThread(Session& session, unsigned minutes) {
  DiagsRunner& runner = session.runner();
  std::thread worker(runOrEndProcess);
  runner.printStatus(minutes);
  worker.join();
  std::cout << "\n";
}

}  // namespace host
