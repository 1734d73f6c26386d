#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

extern char** environ;

/// How long a fresh process takes to its first answer, on the installation as it is shipped and
/// with a schema of 1,600 classes beside it; and how long the command takes to list, alone, with
/// 200 more provider libraries to look at, and with that schema and 58 of them. The command's own
/// process and its worker's are both in it. And what a test costs beside what it does itself.
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kRounds = 21;

struct Case {
  const char* what;
  std::vector<std::string> arguments;
  double most;           ///< the goal in milliseconds; 0: there for comparison
  bool removesTheCache;  ///< before each start
  std::vector<double> elapsed{};
  std::vector<double> processor{};
};

double milliseconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) * 1e-3;
}

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "cold_start_bench: %s\n", what);
  std::exit(2);
}

/// Runs one process to its end; what it prints is not shown.
void start(Case& row) {
  std::vector<char*> arguments;
  for (std::string& argument : row.arguments) arguments.push_back(argument.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  const auto before = std::chrono::steady_clock::now();
  pid_t child = 0;
  const int failure =
      posix_spawn(&child, arguments.front(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) fail("the process cannot be started");
  int status = 0;
  rusage usage{};
  if (wait4(child, &status, 0, &usage) != child || status != 0) fail("the process failed");
  const std::chrono::duration<double, std::milli> elapsed =
      std::chrono::steady_clock::now() - before;
  row.elapsed.push_back(elapsed.count());
  row.processor.push_back(milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime));
}

double medianOf(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// Prints the figures of one case; whether its goal is met.
bool show(const Case& row) {
  const double elapsed = medianOf(row.elapsed);
  const double least = *std::min_element(row.elapsed.begin(), row.elapsed.end());
  std::printf("%-52s %8.1f %8.1f %8.1f ms", row.what, elapsed, least, medianOf(row.processor));
  if (row.most <= 0) return std::puts("") >= 0;
  const bool met = elapsed <= row.most;
  std::printf("  (goal: at most %.0f)%s\n", row.most, met ? "" : "  MISSED");
  return met;
}

/// A run of a test that ends as soon as it has begun, so many times.
Case runOf(const std::string& command, const char* times) {
  return {
      times[1] == '\0' ? "diags run, one test that does nothing" : "diags run, 21 times that test",
      {command, "run", "Scripted Pass", "--repeat", times, "--no-history", "--quiet", "--root",
       BENCH_RUNS_INSTALLATION},
      0,
      false};
}

/// What each further test costs: a process, the framework, the listing, the end of both.
bool showPerTest(const Case& one, const Case& many) {
  const double each = (medianOf(many.elapsed) - medianOf(one.elapsed)) / 20;
  std::printf("%-52s %8.1f %26s (goal: at most 10)%s\n", "a test more in a run", each, "ms",
              each <= 10 ? "" : "  MISSED");
  return each <= 10;
}

}  // namespace

int main() {
  const std::string program = BENCH_COLD_START;
  const std::string own = BENCH_OWN_INSTALLATION;
  const std::string large = BENCH_LARGE_INSTALLATION;
  const std::string command = BENCH_COMMAND;
  const std::string many = BENCH_MANY_INSTALLATION;
  const std::string whole = BENCH_WHOLE_INSTALLATION;
  const std::string cache = large + "/../cold-start-cache";
  const std::string fresh = large + "/../cold-start-fresh";
  std::vector<Case> cases{
      {"own schema, read", {program, own}, 0, false},
      {"own schema, warm cache", {program, own, cache}, 10, false},
      {"1,600 classes more, read", {program, large}, 0, false},
      {"1,600 classes more, read and kept", {program, large, fresh}, 0, true},
      {"1,600 classes more, warm cache", {program, large, cache}, 25, false},
      {"diags list", {command, "list", "--root", own}, 15, false},
      {"diags list, 200 provider libraries more", {command, "list", "--root", many}, 60, false},
      {"diags list, 1,600 classes and 58 libraries more",
       {command, "list", "--root", whole},
       25,
       false},
      runOf(command, "1"),
      runOf(command, "21")};
  // The user's own caches are not the bench's, and take time to be looked through.
  setenv("XDG_CACHE_HOME", fs::weakly_canonical(large + "/../bench-caches").c_str(), 1);
  for (Case& row : cases) start(row);  // writes the caches, and has the files read once
  for (Case& row : cases) row.elapsed.clear(), row.processor.clear();
  for (std::size_t round = 0; round < kRounds; ++round) {
    for (Case& row : cases) {
      if (row.removesTheCache) fs::remove_all(row.arguments.back());
      start(row);
    }
  }
  std::printf("%-52s %8s %8s %8s\n", "from a process's start to its end", "median", "least",
              "processor");
  bool met = true;
  for (const Case& row : cases) met = show(row) && met;
  return showPerTest(cases[cases.size() - 2], cases.back()) && met ? 0 : 1;
}
