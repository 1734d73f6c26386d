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
  const std::string line = "diags-slurm " + m_who + ": " + text::visible(text);
  std::cerr << line << '\n' << std::flush;
  ::syslog(LOG_DAEMON | priorityOf(grade), "%s", line.c_str());
}

}  // namespace slurm
