#pragma once

#include <string>
#include <vector>

namespace host {

/// A command line that the help shows, and what it is good for.
struct Example {
  const char* verb;  ///< empty: of the command as a whole
  const char* line;
  const char* purpose;
};

const std::vector<Example>& examples();

/// Those of a verb, as the help ends with them.
std::string examplesText(const std::string& verb);

}  // namespace host
