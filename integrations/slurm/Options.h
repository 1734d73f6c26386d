#pragma once

#include <optional>
#include <string>
#include <vector>

#include "integrations/slurm/Settings.h"

namespace slurm {

/// What is asked for. `answer` is to be printed, and nothing to be done.
struct Request {
  Verb verb = Verb::kHealth;
  Settings settings;
  std::optional<std::string> answer;
};

/// The verb that the program's own name or its first argument asks for: Slurm gives a health check
/// no arguments, so that links named `health`, `prolog` and `epilog` lead to the program.
std::optional<Verb> verbOf(const std::vector<std::string>& arguments);

/// Reads the command line, the program's name first, and the configuration file. Throws
/// `SettingError`.
Request requestFrom(std::vector<std::string> arguments);

}  // namespace slurm
