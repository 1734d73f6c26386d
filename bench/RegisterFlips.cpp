// How many flipped register bits the comparison of results finds: for each operation of the
// processor tests, processes that calculate as a thread of the engine does, in each of which one
// bit of a general or a vector register is flipped at a random moment, from a signal's handler.
//
//   register_flips [FLIPS] [PART OF A NAME]
//
// A flip counts where the results are not the right ones any more, which is looked up in memory
// that the process cannot write, or where the process has ended. Fails where fewer than 95 in 100
// are found.

#include <cpuid.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <ucontext.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include "providers/common/SplitMix.h"
#include "providers/processor/kernels/Kernels.h"
#include "providers/processor/operations/CacheOperations.h"
#include "providers/processor/operations/OperationTable.h"

namespace {

using namespace providers;

constexpr double kGoal = 0.95;
constexpr int kGeneralRegisters =
    16;  // REG_R8 to REG_RSP; neither flags nor the instruction pointer

enum Exit { kNoEffect = 0, kFound = 10, kMissed = 11, kNotFlipped = 12 };

volatile sig_atomic_t g_isFlipped = 0;
std::uint64_t g_choice = 0;

/// Where the processor puts a part of the vector registers when it saves them.
unsigned offsetOf(unsigned component) {
  unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
  __get_cpuid_count(0xD, component, &eax, &ebx, &ecx, &edx);
  return ebx;
}

struct Part {
  unsigned component;
  unsigned offset;
  unsigned bytes;
};

/// The parts of the vector registers that are in use.
int partsInUse(const unsigned char* state, Part* parts) {
  std::uint64_t inUse;
  std::memcpy(&inUse, state + 512, sizeof inUse);
  int count = 0;
  if (inUse & 2) parts[count++] = {1, 160, 256};
  if (inUse & 4) parts[count++] = {2, offsetOf(2), 256};
  if (inUse & 64) parts[count++] = {6, offsetOf(6), 512};
  if (inUse & 128) parts[count++] = {7, offsetOf(7), 1024};
  return count;
}

void flip(int, siginfo_t*, void* context) {
  auto* machine = &static_cast<ucontext_t*>(context)->uc_mcontext;
  const std::uint64_t bit = splitMix(g_choice, 1);
  Part parts[4];
  auto* state = reinterpret_cast<unsigned char*>(machine->fpregs);
  const int count = partsInUse(state, parts);
  if (splitMix(g_choice, 0) % 2 == 0 || count == 0) {
    const auto number = static_cast<int>(bit / 64 % kGeneralRegisters);
    machine->gregs[number] ^= static_cast<long long>(std::uint64_t{1} << bit % 64);
  } else {
    const Part& part = parts[splitMix(g_choice, 2) % static_cast<unsigned>(count)];
    state[part.offset + bit / 8 % part.bytes] ^= static_cast<unsigned char>(1U << bit % 8);
  }
  g_isFlipped = 1;
}

/// The right results, where the process cannot change them.
const std::uint64_t* protectedCopy(const Words& words) {
  const std::size_t bytes = words.size() * sizeof words[0];
  void* const room =
      mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  std::memcpy(room, words.data(), bytes);
  mprotect(room, bytes, PROT_READ);
  return static_cast<const std::uint64_t*>(room);
}

double now() {
  timespec time = {};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// What a thread of the engine does, until a bit is flipped and the block at hand is done.
int calculate(const Operation& operation, std::uint64_t seed, const Words& answer,
              const std::uint64_t* right, double blockSeconds, std::uint64_t choice) {
  struct sigaction action = {};
  action.sa_sigaction = flip;
  action.sa_flags = SA_SIGINFO;
  sigaction(SIGALRM, &action, nullptr);
  g_choice = choice;
  const Executor executor;
  Words operands, results;
  drawOperands(operation, seed, operands);
  computeBlock(executor, operation, operands, results);
  const double span = blockSeconds * 3 + 20e-6;
  itimerval timer = {};
  timer.it_value.tv_usec =
      1 + static_cast<suseconds_t>(static_cast<double>(splitMix(choice, 3) % 1000) * span * 1e3);
  setitimer(ITIMER_REAL, &timer, nullptr);
  const double end = now() + 1;
  bool wasFound = false;
  while (!g_isFlipped && !wasFound && now() < end) {
    drawOperands(operation, seed, operands);
    computeBlock(executor, operation, operands, results);
    wasFound = firstMismatch(operation, answer, results).has_value();
  }
  if (wasFound) return kFound;
  if (!g_isFlipped) return kNotFlipped;
  return std::memcmp(right, results.data(), answer.size() * sizeof answer[0]) == 0 ? kNoEffect
                                                                                   : kMissed;
}

struct Tally {
  int found = 0, ended = 0, missed = 0, noEffect = 0;
  double share() const {
    const int counting = found + ended + missed;
    return counting == 0 ? 1 : static_cast<double>(found + ended) / counting;
  }
};

void count(int status, Tally& tally) {
  if (!WIFEXITED(status)) {
    ++tally.ended;
  } else if (WEXITSTATUS(status) == kFound) {
    ++tally.found;
  } else if (WEXITSTATUS(status) == kMissed) {
    ++tally.missed;
  } else if (WEXITSTATUS(status) == kNoEffect || WEXITSTATUS(status) == kNotFlipped) {
    ++tally.noEffect;
  } else {
    ++tally.ended;
  }
}

Tally tryOperation(const Operation& operation, int flips) {
  constexpr std::uint64_t kSeed = 12345;
  const Executor executor;
  Words operands, answer, results;
  drawOperands(operation, kSeed, operands);
  answerBlock(executor, operation, operands, answer);
  const std::uint64_t* const right = protectedCopy(answer);
  const double begin = now();
  drawOperands(operation, kSeed, operands);
  computeBlock(executor, operation, operands, results);
  const double blockSeconds = now() - begin;
  Tally tally;
  // Until so many flips have had an effect, or it is clear that few ever have one.
  for (int i = 0; tally.found + tally.ended + tally.missed < flips && i < 20 * flips; ++i) {
    const pid_t child = fork();
    if (child == 0) {
      std::fclose(stderr);
      _exit(calculate(operation, kSeed, answer, right, blockSeconds,
                      splitMix(static_cast<std::uint64_t>(flips), static_cast<std::uint64_t>(i))));
    }
    int status = 0;
    // One that does not come to an end is ended by the supervisor.
    const double end = now() + 3;
    while (waitpid(child, &status, WNOHANG) == 0) {
      if (now() > end) kill(child, SIGKILL);
      usleep(50);
    }
    count(status, tally);
  }
  return tally;
}

}  // namespace

int main(int argc, char** argv) {
  const int flips = argc > 1 ? std::atoi(argv[1]) : 1000;
  const std::string part = argc > 2 ? argv[2] : "";
  Operations all = processorOperations();
  const Kernels kernels = loadKernels(DIAGS_INSTALLATION_DIR "/providers");
  all.insert(all.end(), kernels.operations.begin(), kernels.operations.end());
  all.push_back(cacheOperation("First-level cache", 32768));
  bool isGood = true;
  std::printf("%-58s %6s %6s %6s %9s %7s\n", "Operation", "found", "ended", "missed", "no effect",
              "share");
  for (const Operation& operation : all) {
    if (std::string(operation.name).find(part) == std::string::npos) continue;
    const Tally tally = tryOperation(operation, flips);
    std::printf("%-58s %6d %6d %6d %9d %6.1f%%\n", operation.name, tally.found, tally.ended,
                tally.missed, tally.noEffect, 100 * tally.share());
    std::fflush(stdout);
    isGood = isGood && tally.share() >= kGoal;
  }
  return isGood ? 0 : 1;
}
