#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace slurm {

/// One thing that a test said of a part.
struct Diagnosis {
  bool isFailure = false;  ///< else a warning
  bool isOfLimit = false;  ///< a number beyond its limit, said by the engine
  std::string text;
  std::string part;
  std::vector<std::string> actions;
};

/// A test that failed, or that warned.
struct Finding {
  bool isFailure = false;
  std::string service;
  std::string device;
  std::string element;
  std::string remark;  ///< what its record says in one line
  std::string record;
  std::uint64_t errors = 0;  ///< as it measured them
  std::vector<Diagnosis> diagnoses;
};

/// What the tests of a run came to, read from the events of `diags run --events -` line by line, so
/// that a run that is cut off counts for what it had found by then. Lines that are no events are
/// passed over, as later versions may say more.
class Findings {
 public:
  void take(std::string_view line);

  const std::vector<Finding>& all() const { return m_ended; }
  std::uint64_t passed() const { return m_passed; }
  /// Those that their own troubles kept from a verdict.
  std::uint64_t undecided() const { return m_undecided; }
  /// Those that were ended, or never began, as their time was up.
  std::uint64_t cut() const { return m_cut; }
  /// Whether the run came to its end.
  bool isWhole() const { return m_isWhole; }

 private:
  struct Reader;

  std::map<std::uint64_t, Finding> m_running;
  std::vector<Finding> m_ended;
  std::uint64_t m_passed = 0;
  std::uint64_t m_undecided = 0;
  std::uint64_t m_cut = 0;
  bool m_isWhole = false;
};

}  // namespace slurm
