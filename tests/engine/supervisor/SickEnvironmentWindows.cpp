#include <windows.h>

#include <cstdlib>
#include <cstring>

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

OneProcessor::OneProcessor() : m_former(sizeof(DWORD_PTR), '\0') {
  DWORD_PTR allowed = 0;
  DWORD_PTR present = 0;
  GetProcessAffinityMask(GetCurrentProcess(), &allowed, &present);
  std::memcpy(m_former.data(), &allowed, sizeof allowed);
  while (allowed >> m_number > 1) ++m_number;
  SetProcessAffinityMask(GetCurrentProcess(), DWORD_PTR{1} << m_number);
}

OneProcessor::~OneProcessor() {
  DWORD_PTR allowed = 0;
  std::memcpy(&allowed, m_former.data(), sizeof allowed);
  SetProcessAffinityMask(GetCurrentProcess(), allowed);
}

}  // namespace sick
