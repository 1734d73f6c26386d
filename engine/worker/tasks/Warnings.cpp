#include "engine/worker/tasks/Tasks.h"
#include "engine/worker/wire/Wire.h"

namespace engine::tasks {
namespace {

void tell(const std::string& text) { wire::send(Finding{Weight::kWarning, text}); }

/// A fault of the installation may be why a test is missing.
void tellOfProblems(const substitute::Framework& framework) {
  const std::size_t count = framework.problems().size();
  if (count == 0) return;
  const bool isOne = count == 1;
  tell("the installation has " + std::to_string(count) + (isOne ? " fault" : " faults") +
       "; diags check names " + (isOne ? "it" : "them"));
}

/// So may a data file that cannot be read, or not to its end.
std::vector<std::string> lookAtDataFiles(const substitute::Framework& framework) {
  std::vector<std::string> lines;
  std::string told;
  for (const substitute::Problem& problem : framework.checkDataFiles()) {
    if (!problem.isCut || problem.file == told) continue;
    lines.push_back(problem.toText());
    told = problem.file;
  }
  return lines;
}

}  // namespace

void Warnings::begin(const Session& session) {
  for (const std::string& line : session.framework().warningsForRoot()) tell(line);
  tellOfProblems(session.framework());
  // Where no thread can be had, they are read at the end.
  m_dataFiles = std::async(std::launch::async | std::launch::deferred,
                           [&session] { return lookAtDataFiles(session.framework()); });
}

void Warnings::end() {
  if (!m_dataFiles.valid()) return;
  for (const std::string& line : m_dataFiles.get()) tell(line);
}

}  // namespace engine::tasks
