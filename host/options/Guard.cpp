#include "host/options/Guard.h"

namespace host {
namespace {

bool needsGuard(const std::string& argument) {
  if (argument.empty()) return false;
  const bool isBracketed = argument.front() == '[' && argument.back() == ']';
  return isBracketed || argument.front() == kGuard;
}

}  // namespace

std::vector<std::string> guarded(const std::vector<std::string>& arguments) {
  std::vector<std::string> result;
  bool optionsEnded = false;
  for (const std::string& argument : arguments) {
    if (argument == "--" && !optionsEnded) {
      optionsEnded = true;
    } else {
      result.push_back(optionsEnded || needsGuard(argument) ? kGuard + argument : argument);
    }
  }
  return result;
}

void unguard(std::string& argument) {
  if (!argument.empty() && argument.front() == kGuard) argument.erase(0, 1);
}

}  // namespace host
