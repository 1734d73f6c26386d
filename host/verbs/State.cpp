#include "host/verbs/State.h"

#include <filesystem>

#include "history/StateDirectory.h"
#include "host/Process.h"

namespace host {

history::History openHistory(const Options& options, const history::Options& how) {
  const auto environment = [](const char* name) { return environmentVariable(name); };
  const std::filesystem::path directory = options.state.empty()
                                              ? history::defaultStateDirectory(environment)
                                              : std::filesystem::u8path(options.state);
  return history::History::open(directory, how);
}

}  // namespace host
