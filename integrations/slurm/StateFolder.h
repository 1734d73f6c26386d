#pragma once

#include <ctime>
#include <optional>
#include <string>

#include "integrations/slurm/Duration.h"
#include "integrations/slurm/Settings.h"

namespace slurm {

/// How the last run of a verb went.
struct LastRun {
  std::time_t time = 0;
  std::string verdict;
  std::string reason;
  bool isSettled = true;  ///< false: the node was to be drained, and could not be
};

/// Whether it is so short a time ago that there is nothing to do. A time to come was another
/// clock's.
bool isRecent(const LastRun& last, std::time_t now, Duration every);

/// The folder in which it is kept what ran when: root's own, made where it is missing. One program
/// at a time holds it.
class StateFolder {
 public:
  /// Throws `SettingError` that names the folder where it cannot be made, or others can write
  /// there.
  explicit StateFolder(const std::string& path);
  ~StateFolder();
  StateFolder(const StateFolder&) = delete;
  StateFolder& operator=(const StateFolder&) = delete;

  /// Whether this program holds it now, until it ends.
  bool lock();

  /// Nothing where there is none, or none that can be understood.
  std::optional<LastRun> last(Verb verb) const;
  void keep(Verb verb, const LastRun& run) const;

  const std::string& path() const { return m_path; }

 private:
  std::string m_path;
  int m_folder = -1;
  int m_lock = -1;
};

}  // namespace slurm
