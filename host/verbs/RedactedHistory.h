#pragma once

#include <string>
#include <vector>

#include "history/History.h"
#include "reports/redact/Secrets.h"

namespace host {

/// Takes out of what a history answers what tells its machines from others, as a report of each run
/// does. Does nothing unless it is asked to.
class RedactedHistory {
 public:
  /// The history must outlive it.
  RedactedHistory(const history::History& kept, bool isWanted)
      : m_kept(kept), m_isWanted(isWanted) {}

  void redact(std::vector<history::RunRecord>& runs);
  void redact(history::Difference& difference);
  void redact(std::vector<history::Trend>& trends);
  /// What the user wrote, as it may be shown: to be asked after the others, who learn the names.
  std::string shown(const std::string& text) { return m_isWanted ? m_secrets.redact(text) : text; }

 private:
  /// Whether there is something to learn of its machine.
  bool learn(const std::string& run);
  void redact(history::RunRecord& run);
  void redact(history::TestDifference& test);
  void redact(std::optional<history::Measured>& value);
  void redact(std::string& text) { text = m_secrets.redact(text); }

  const history::History& m_kept;
  bool m_isWanted;
  reports::Secrets m_secrets;
};

}  // namespace host
