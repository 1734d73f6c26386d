#include "integrations/slurm/Jobs.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <string_view>

namespace slurm {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

bool isStep(int processes, const char* process) {
  constexpr std::string_view kStep = "slurmstepd";
  const std::string name = std::string(process) + "/comm";
  const int file = ::openat(processes, name.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  std::array<char, 64> buffer{};
  const ssize_t size = ::read(file, buffer.data(), buffer.size());
  ::close(file);
  const std::string_view text(buffer.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
  return text.substr(0, text.find('\n')) == kStep;
}

}  // namespace

bool isJobRunning(const std::string& processes) {
  const std::unique_ptr<DIR, CloseFolder> folder(::opendir(processes.c_str()));
  if (!folder) return false;
  while (const dirent* const entry = ::readdir(folder.get())) {
    const char first = entry->d_name[0];
    if (first >= '1' && first <= '9' && isStep(::dirfd(folder.get()), entry->d_name)) return true;
  }
  return false;
}

}  // namespace slurm
