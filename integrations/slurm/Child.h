#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "integrations/slurm/Clock.h"

namespace slurm {

/// A program that is run, and what it is given: nothing of this process's environment.
struct Command {
  std::vector<std::string> arguments;  ///< the program's absolute path first
  std::vector<std::string> environment;
};

enum class ChildEnd { kExited, kSignalled, kTimedOut, kNotStarted };

struct ChildResult {
  ChildEnd end = ChildEnd::kNotStarted;
  int code = 0;     ///< its exit status, or the signal
  std::string why;  ///< where it did not start
};

/// A line of its output, without its end. One of more than a few megabytes is not told.
using LineTaker = std::function<void(std::string_view)>;

/// Runs it in a process group of its own until it ends; at `terminate` it is told to, at `kill` it
/// is ended with its group. It also ends when this process does, however that happens. No more than
/// one at a time.
ChildResult runChild(const Command& command, const Clock& clock, Duration terminate, Duration kill,
                     const LineTaker& output, const LineTaker& errors);

/// Ends the one that is under way. To be called from a signal handler, too.
void killChild() noexcept;

}  // namespace slurm
