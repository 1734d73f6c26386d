#include "host/verbs/FileNames.h"

#include "host/Messages.h"
#include "host/Process.h"

namespace host {
namespace {

std::string machineName(const std::string& given) {
  std::string name = environmentVariable("SLURMD_NODENAME");
  if (name.empty()) name = hostName().substr(0, hostName().find('.'));
  const bool isOne =
      !name.empty() && name.front() != '.' && name.find_first_of("/\\:") == std::string::npos;
  if (!isOne)
    throw UsageError(given + ": this machine's name \"" + name + "\" is no name of a file");
  return name;
}

}  // namespace

std::string fileNameFrom(const std::string& given) {
  std::string name;
  for (std::size_t i = 0; i < given.size(); ++i) {
    if (given[i] != '%') {
      name += given[i];
      continue;
    }
    const char what = ++i < given.size() ? given[i] : '\0';
    if (what != 'N' && what != '%') {
      throw UsageError(given +
                       ": %N is this machine's name, %% a percent sign, and nothing else "
                       "may stand behind one");
    }
    name += what == '%' ? "%" : machineName(given);
  }
  return name;
}

}  // namespace host
