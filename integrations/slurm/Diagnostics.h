#pragma once

#include <string>

#include "integrations/slurm/Child.h"
#include "integrations/slurm/Clock.h"
#include "integrations/slurm/Findings.h"
#include "integrations/slurm/Log.h"
#include "integrations/slurm/Settings.h"

namespace slurm {

enum class Verdict {
  kSound,
  kWarned,
  kCut,         ///< no fault in what there was time for
  kUnfinished,  ///< the node could not be tested, or not all of it
  kFaulty
};

std::string nameOf(Verdict verdict);

struct Answer {
  Verdict verdict = Verdict::kUnfinished;
  std::string text;  ///< of a faulty node, or a warning, what is told of it; else why
};

/// What a run came to, however it ended.
Answer answerFrom(const Findings& findings, const ChildResult& result);

/// The command `diags` that belongs to this program. Throws `SettingError` where there is none.
std::string findDiags(const Settings& settings);

/// Runs the plan by the command, within the budget.
Answer runDiagnostics(const Settings& settings, const std::string& diags, const Clock& clock,
                      const Log& log);

}  // namespace slurm
