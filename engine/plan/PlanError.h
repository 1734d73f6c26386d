#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace engine {

/// What somebody asked for and cannot be had: a plan, a name, a setting, a time. The text says what
/// and, where it stood in a file, where. Names stand in it as they were given: whoever shows it
/// makes it safe for that place.
class PlanError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Everything that was asked for can be had, and nothing is left to run.
class NothingToRun : public PlanError {
 public:
  using PlanError::PlanError;
};

/// Where a part of a plan was written; no file: on the command line.
struct Place {
  std::string file;
  std::uint32_t line = 0;
  std::uint32_t column = 0;
};

/// Throws `PlanError`: `night.toml:3:7: TEXT`, or `TEXT` alone.
[[noreturn]] void refuse(const Place& place, const std::string& text);

}  // namespace engine
