#include <windows.h>

#include <cstdlib>

#include "host/display/Terminal.h"

#ifndef ENABLE_VIRTUAL_TERMINAL_PROCESSING
#define ENABLE_VIRTUAL_TERMINAL_PROCESSING 0x0004
#endif

namespace host {
namespace {

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

bool letTakeSequences(HANDLE output, DWORD mode) {
  return SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

}  // namespace

Surroundings surroundings() {
  const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD mode = 0;
  const bool isTerminal = GetConsoleMode(output, &mode) != 0;
  const bool isDumb = variable("TERM") == "dumb";
  return {isTerminal, isTerminal && !isDumb && letTakeSequences(output, mode),
          variable("NO_COLOR")};
}

ScreenSize terminalSize() {
  ScreenSize size;
  CONSOLE_SCREEN_BUFFER_INFO info = {};
  if (GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) == 0) return size;
  size.columns = static_cast<unsigned>(info.srWindow.Right - info.srWindow.Left + 1);
  size.rows = static_cast<unsigned>(info.srWindow.Bottom - info.srWindow.Top + 1);
  return size;
}

}  // namespace host
