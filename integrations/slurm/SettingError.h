#pragma once

#include <stdexcept>

namespace slurm {

/// What was asked for makes no sense. The text says where: an option, or a file with its line.
class SettingError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace slurm
