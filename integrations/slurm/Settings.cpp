#include "integrations/slurm/Settings.h"

#include "integrations/slurm/Budget.h"
#include "integrations/slurm/SettingError.h"

namespace slurm {
namespace {

using S = Settings;

Key fileKey(const char* name, std::string S::*where, const char* help) {
  return {name, Kind::kFile, help, where, nullptr, nullptr};
}

Key timeKey(const char* name, Duration S::*where, const char* help) {
  return {name, Kind::kTime, help, nullptr, where, nullptr};
}

Key truthKey(const char* name, bool S::*where, const char* help) {
  return {name, Kind::kTruth, help, nullptr, nullptr, where};
}

[[noreturn]] void refuse(const Key& key, const std::string& what) {
  throw SettingError(std::string(key.name) + ": " + what);
}

void needAbsolute(const Key& key, const std::string& value) {
  if (value.empty() || value.front() != '/') {
    refuse(key, "\"" + value + "\" is no absolute path");
  }
}

/// A name of the installation's plans, or a file: what the current folder holds is nobody's affair.
void needPlan(const Key& key, const std::string& value) {
  if (value.empty()) refuse(key, "names no plan");
  const bool isName = value.find_first_of("/.") == std::string::npos && value.front() != '-';
  if (!isName) needAbsolute(key, value);
}

/// What goes into an argument of scontrol as a name must be one, and no list of them.
void needName(const Key& key, const std::string& value) {
  const char* const known = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.";
  if (value.empty() || value.front() == '-' || value.find_first_not_of(known) != std::string::npos)
    refuse(key, "\"" + value + "\" is no name of a node");
}

Duration timeOf(const Key& key, const std::string& value) {
  try {
    const Duration time = durationFrom(value);
    if (key.time == &S::budget && time < kLeastBudget) refuse(key, "must be at least 2s");
    return time;
  } catch (const SettingError& error) {
    const std::string text = error.what();
    if (text.rfind(key.name, 0) == 0) throw;
    refuse(key, text);
  }
}

bool truthOf(const Key& key, const std::string& value) {
  if (value != "true" && value != "false") {
    refuse(key, "\"" + value + "\" is neither true nor false");
  }
  return value == "true";
}

}  // namespace

std::string nameOf(Verb verb) {
  if (verb == Verb::kHealth) return "health";
  return verb == Verb::kProlog ? "prolog" : "epilog";
}

Settings defaultsOf(Verb verb) {
  Settings settings;
  // Slurm ends a health check after 60 seconds.
  settings.budget = verb == Verb::kHealth ? Duration(50'000) : Duration(30'000);
  settings.every = Duration(3'600'000);
  return settings;
}

const std::vector<Key>& settingKeys() {
  static const std::vector<Key> keys{
      {"plan", Kind::kPlan, "What to run: a plan of the installation, or a file", &S::plan, nullptr,
       nullptr},
      timeKey("budget", &S::budget, "Be back by then, whatever hangs (health 50s, others 30s)"),
      timeKey("every", &S::every, "Do nothing where this ran within that time (1h)"),
      truthKey("during-jobs", &S::duringJobs, "Run while jobs are on the node, too"),
      truthKey("drain", &S::drain, "Drain a node with a faulty part (true)"),
      truthKey("drain-warned", &S::drainWarned, "Drain a node with a warning, too"),
      truthKey("drain-unfinished", &S::drainUnfinished,
               "Drain a node that could not be tested, too"),
      fileKey("diags", &S::diags, "The command diags (the one of this package)"),
      fileKey("root", &S::root, "The installation of the diagnostics (the command's own)"),
      fileKey("scontrol", &S::scontrol, "The command scontrol (/usr/bin/scontrol)"),
      fileKey("slurm-conf", &S::slurmConf, "Slurm's configuration ($SLURM_CONF, or Slurm's own)"),
      fileKey("state", &S::state, "Where it is kept what ran when (/var/lib/diagsrunner/slurm)"),
      {"node", Kind::kText, "The node's name ($SLURMD_NODENAME, or the host's)", &S::node, nullptr,
       nullptr}};
  return keys;
}

void set(Settings& settings, const Key& key, const std::string& value) {
  if (key.kind == Kind::kTime) {
    settings.*key.time = timeOf(key, value);
  } else if (key.kind == Kind::kTruth) {
    settings.*key.truth = truthOf(key, value);
  } else {
    if (key.kind == Kind::kFile) needAbsolute(key, value);
    if (key.kind == Kind::kPlan) needPlan(key, value);
    if (key.kind == Kind::kText) needName(key, value);
    settings.*key.text = value;
  }
}

}  // namespace slurm
