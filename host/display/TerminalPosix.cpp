#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>

#include "host/display/Terminal.h"

namespace host {
namespace {

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

}  // namespace

Surroundings surroundings() {
  const std::string term = variable("TERM");
  return {isatty(STDOUT_FILENO) == 1, !term.empty() && term != "dumb", variable("NO_COLOR")};
}

ScreenSize terminalSize() {
  ScreenSize size;
  winsize answer = {};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &answer) != 0) return size;
  if (answer.ws_col > 0) size.columns = answer.ws_col;
  if (answer.ws_row > 0) size.rows = answer.ws_row;
  return size;
}

}  // namespace host
