#include <windows.h>

#include <cstdio>

#include "providers/processor/status/Health.h"

namespace providers {

namespace {

std::wstring keyOf(unsigned cpu) {
  return L"HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\" + std::to_wstring(cpu);
}

/// The revision is in the upper half of eight bytes.
std::string microcode(unsigned cpu) {
  unsigned char bytes[8] = {};
  DWORD size = sizeof bytes;
  if (RegGetValueW(HKEY_LOCAL_MACHINE, keyOf(cpu).c_str(), L"Update Revision", RRF_RT_REG_BINARY,
                   nullptr, bytes, &size) != ERROR_SUCCESS ||
      size != sizeof bytes)
    return {};
  char text[16];
  std::snprintf(text, sizeof text, "0x%02x%02x%02x%02x", bytes[7], bytes[6], bytes[5], bytes[4]);
  return text;
}

std::optional<unsigned> megahertz(unsigned cpu) {
  DWORD value = 0;
  DWORD size = sizeof value;
  if (RegGetValueW(HKEY_LOCAL_MACHINE, keyOf(cpu).c_str(), L"~MHz", RRF_RT_REG_DWORD, nullptr,
                   &value, &size) != ERROR_SUCCESS)
    return std::nullopt;
  return static_cast<unsigned>(value);
}

}  // namespace

Health queryHealth(const std::vector<unsigned>& cpus) {
  Health health;
  for (const unsigned cpu : cpus) {
    ThreadHealth thread;
    thread.cpu = cpu;
    thread.microcode = microcode(cpu);
    thread.megahertz = megahertz(cpu);
    health.threads.push_back(thread);
  }
  return health;
}

}  // namespace providers
