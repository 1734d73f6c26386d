#include "integrations/slurm/Log.h"

#include <syslog.h>

#include <iostream>

#include "text/SafeText.h"

namespace slurm {
namespace {

int priorityOf(Log::Grade grade) {
  if (grade == Log::Grade::kInfo) return LOG_INFO;
  return grade == Log::Grade::kWarning ? LOG_WARNING : LOG_ERR;
}

}  // namespace

void Log::tell(Grade grade, const std::string& text) const {
  const std::string line = m_who + ": " + text::visible(text);
  std::cerr << "diags-slurm " << line << '\n' << std::flush;
  ::openlog("diags-slurm", LOG_PID, LOG_DAEMON);
  ::syslog(priorityOf(grade), "%s", line.c_str());
}

}  // namespace slurm
