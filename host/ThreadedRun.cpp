#include "host/ThreadedRun.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "host/ExitStatus.h"
#include "host/Messages.h"

namespace host {
namespace {

void runOrEndProcess() noexcept {
  try {
    DiagsRunner::ExecuteInThread(nullptr);
  } catch (...) {
    std::cout << "\n";
    reportError("the threaded run ended by an exception: " + currentExceptionText());
    std::fflush(nullptr);
    std::_Exit(static_cast<int>(ExitStatus::kCouldNotRun));
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
