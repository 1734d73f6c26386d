#pragma once

#include <stdexcept>

namespace engine {

/// A program cannot be started now or later: it is missing, or no program of this system.
class ProgramError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace engine
