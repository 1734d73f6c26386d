#include "diagsrunner/DiagsRunner.h"
#include "execution/DiagnosticCall.h"
#include "runner/ProcessRunner.h"

void* DiagsRunner::ExecuteInThread(void*) {
  DiagsRunner* runner = diagsrunner::processRunner();
  if (runner != nullptr) {
    diagsrunner::invokeMethod(runner->m_runService, "RunDiagnostic", runner->m_runParams);
    runner->m_runFinished.set(true);
  }
  return nullptr;
}
