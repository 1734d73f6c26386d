#pragma once

#include <string>

namespace slurm {

/// One line to standard error, which Slurm's daemon takes into its own log where a program fails,
/// and to the system's log. What comes from outside is made safe.
class Log {
 public:
  enum class Grade { kInfo, kWarning, kError };

  explicit Log(std::string who) : m_who(std::move(who)) {}

  void tell(Grade grade, const std::string& text) const;

 private:
  std::string m_who;
};

}  // namespace slurm
