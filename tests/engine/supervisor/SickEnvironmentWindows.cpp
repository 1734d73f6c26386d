#include <windows.h>

#include <cstdlib>

#include "tests/engine/supervisor/SickEnvironment.h"

namespace sick {

/// The run time's own copy of the environment, and the system's, which children get.
void setVariable(const char* name, const std::string& value) {
  _putenv_s(name, value.c_str());
  SetEnvironmentVariableA(name, value.empty() ? nullptr : value.c_str());
}

/// A worker's job ends with it: there is nothing to look for.
std::size_t countMarked() { return 0; }

void pauseBriefly() { Sleep(10); }

}  // namespace sick
