#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

extern char** environ;

/// What a health check of a Slurm node costs that has nothing to do, since it ran within its
/// interval, beside the start of a process that does nothing.
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kRounds = 101;
constexpr double kMost = 20;

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "slurm_check_bench: %s\n", what);
  std::exit(2);
}

/// In milliseconds.
double timeOf(std::vector<std::string> texts) {
  std::vector<char*> arguments;
  for (std::string& text : texts) arguments.push_back(text.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  const auto before = std::chrono::steady_clock::now();
  pid_t child = 0;
  const int failure =
      posix_spawn(&child, arguments.front(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  if (failure != 0 || waitpid(child, &status, 0) != child) fail("a process cannot be started");
  if (status != 0) fail("a process failed");
  const std::chrono::duration<double, std::milli> elapsed =
      std::chrono::steady_clock::now() - before;
  return elapsed.count();
}

double medianOf(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// A command that has one test, which passed.
void writeDiags(const fs::path& file) {
  std::ofstream(file) << "#!/bin/sh\n"
                         "echo '{\"testId\":1,\"end\":{\"outcome\":\"passed\"}}'\n"
                         "echo '{\"end\":{\"outcome\":\"passed\"}}'\n";
  fs::permissions(file, fs::perms::owner_all);
}

}  // namespace

int main() {
  std::string name = (fs::temp_directory_path() / "slurm-check-bench-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) fail("no folder can be made");
  const fs::path folder = name;
  writeDiags(folder / "diags");
  const std::vector<std::string> check{BENCH_SLURM, "health",         "--node",  "n1",
                                       "--diags",   folder / "diags", "--state", folder / "state"};
  std::vector<std::string> first = check;
  first.insert(first.end(), {"--every", "0s", "--during-jobs"});
  timeOf(first);  // the next one has nothing to do
  std::vector<double> nothing;
  std::vector<double> idle;
  for (std::size_t round = 0; round < kRounds; ++round) {
    nothing.push_back(timeOf({"/bin/true"}));
    idle.push_back(timeOf(check));
  }
  fs::remove_all(folder);
  const double most = *std::max_element(idle.begin(), idle.end());
  const bool met = medianOf(idle) <= kMost;
  std::printf("a process that does nothing     %6.2f ms\n", medianOf(nothing));
  std::printf(
      "a health check without work     %6.2f ms, %.1f times that; at most %.2f ms (goal: %.0f)%s\n",
      medianOf(idle), medianOf(idle) / medianOf(nothing), most, kMost, met ? "" : "  MISSED");
  return met ? 0 : 1;
}
