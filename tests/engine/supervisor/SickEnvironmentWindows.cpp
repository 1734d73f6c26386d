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

namespace {

HANDLE handleOf(std::intptr_t value) { return reinterpret_cast<HANDLE>(value); }

}  // namespace

StrayPipe::StrayPipe() {
  SECURITY_ATTRIBUTES attributes = {sizeof attributes, nullptr, TRUE};
  HANDLE exit = nullptr;
  HANDLE entry = nullptr;
  if (!CreatePipe(&exit, &entry, &attributes, 0)) return;
  SetHandleInformation(exit, HANDLE_FLAG_INHERIT, 0);
  m_exit = reinterpret_cast<std::intptr_t>(exit);
  m_entry = reinterpret_cast<std::intptr_t>(entry);
}

StrayPipe::~StrayPipe() {
  closeEntry();
  CloseHandle(handleOf(m_exit));
}

void StrayPipe::closeEntry() {
  if (m_entry != -1) CloseHandle(handleOf(m_entry));
  m_entry = -1;
}

bool StrayPipe::isHeldByOthers() {
  closeEntry();
  DWORD waiting = 0;
  const bool isOpen = PeekNamedPipe(handleOf(m_exit), nullptr, 0, nullptr, &waiting, nullptr) != 0;
  return isOpen || GetLastError() != ERROR_BROKEN_PIPE;
}

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
