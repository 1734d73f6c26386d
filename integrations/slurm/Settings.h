#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "integrations/slurm/Duration.h"

namespace slurm {

enum class Verb { kHealth, kProlog, kEpilog };

std::string nameOf(Verb verb);

/// What the program goes by: each of them is an option and a key of the configuration file.
struct Settings {
  std::string diags;  ///< the command; empty: the one that lies where this program belongs
  std::string root;   ///< the installation; empty: the command's own
  std::string scontrol = "/usr/bin/scontrol";
  std::string slurmConf;  ///< empty: that of the environment, or Slurm's own
  std::string state = "/var/lib/diagsrunner/slurm";
  std::string node;  ///< empty: as Slurm calls it, or the system
  std::string plan = "quick";
  Duration budget{};
  Duration every{};
  bool duringJobs = false;
  bool drain = true;
  bool drainWarned = false;
  bool drainUnfinished = false;
};

Settings defaultsOf(Verb verb);

enum class Kind { kFile, kText, kPlan, kTime, kTruth };

/// One of them, by its name on the command line and in the file.
struct Key {
  const char* name;
  Kind kind;
  const char* help;
  std::string Settings::*text;
  Duration Settings::*time;
  bool Settings::*truth;
};

const std::vector<Key>& settingKeys();

/// Throws `SettingError` that names the key, and says what is wrong with the value.
void set(Settings& settings, const Key& key, const std::string& value);

}  // namespace slurm
