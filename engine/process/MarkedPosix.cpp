#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

#include "engine/process/Marked.h"

namespace engine {
namespace {

bool isMarked(const std::filesystem::path& process, const std::string& entry) {
  std::ifstream file(process / "environ", std::ios::binary);
  const std::string all{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  return ('\0' + all).find('\0' + entry + '\0') != std::string::npos;
}

/// Whether any was there to kill.
bool killOnce(const std::string& entry) {
  bool found = false;
  std::error_code failure;
  for (std::filesystem::directory_iterator it("/proc", failure), end; !failure && it != end;
       it.increment(failure)) {
    const int id = std::atoi(it->path().filename().c_str());
    if (id <= 1 || id == getpid() || !isMarked(it->path(), entry)) continue;
    found = ::kill(id, SIGKILL) == 0 || found;
  }
  return found;
}

}  // namespace

void killMarked(const std::string& mark) noexcept {
  try {
    const std::string entry = std::string(kMarkVariable) + "=" + mark;
    // One that forks as it is killed leaves a child; the dead have no environment any more.
    for (int round = 0; round < 100 && killOnce(entry); ++round) {
    }
  } catch (...) {
    // Without memory nothing can be looked up.
  }
}

}  // namespace engine
