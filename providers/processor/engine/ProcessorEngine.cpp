#include "providers/processor/engine/ProcessorEngine.h"

#include <algorithm>

#include "providers/processor/engine/Calculation.h"

namespace providers {

namespace {

/// For all that went wrong together. A test has a time limit, and who exceeds it loses what was
/// found; on a machine of hundreds of processors it would take hours to try all on each of them.
constexpr double kBlameSeconds = 60;

/// A wrong answer makes many suspicious who are right: it is one fault all the same.
void addFinding(const Suspicion& suspicion, const Verdict& verdict,
                std::vector<CalculationFault>& findings) {
  const auto known =
      std::find_if(findings.begin(), findings.end(), [&](const CalculationFault& finding) {
        return finding.verdict.place.cpu == verdict.place.cpu &&
               finding.verdict.extent == verdict.extent &&
               finding.suspicion.operation.name == suspicion.operation.name;
      });
  if (known == findings.end()) {
    findings.push_back({suspicion, verdict, suspicion.count});
  } else {
    known->count += suspicion.count;
    known->verdict.comesBack = known->verdict.comesBack || verdict.comesBack;
  }
}

}  // namespace

ProcessorReport ProcessorEngine::run(const ProcessorPlan& plan, RunControl& control) const {
  ProcessorReport report;
  control.status("Calculating on " + std::to_string(plan.cpus.size()) + " threads");
  Calculation calculation(m_surroundings, plan, control);
  calculation.execute(report);
  if (calculation.suspicions().empty()) return report;
  control.status("Trying again what went wrong, alone and on the others");
  const double begin = m_surroundings.clock();
  const auto whyNotOn = [&]() -> std::string {
    if (control.stopRequested()) return "the run was stopped";
    return m_surroundings.clock() - begin < kBlameSeconds ? "" : "it would take too long";
  };
  const Blame blame({m_surroundings.bind, m_surroundings.executor, m_surroundings.start, whyNotOn},
                    plan.places);
  for (const Suspicion& suspicion : calculation.suspicions())
    addFinding(suspicion, blame.judge(suspicion), report.findings);
  return report;
}

}  // namespace providers
