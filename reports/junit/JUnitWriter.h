#pragma once

#include <cstdint>
#include <map>
#include <ostream>
#include <set>
#include <string>

#include "engine/events/EventSink.h"
#include "reports/common/IdSet.h"
#include "reports/common/LineWriter.h"
#include "reports/junit/XmlText.h"

namespace reports {

/// Writes a run as a JUnit document: one suite, a case for each run of a test, in the order of
/// their numbers. Its first element has the counts, so that the whole is written when the run ends;
/// until then it keeps what a case says. Of a long output that is the beginning and the end, and
/// nothing of one where the document has become very large: what failed is always told.
class JUnitWriter : public engine::EventSink {
 public:
  /// The stream must outlive it; `file` is its name.
  JUnitWriter(std::ostream& out, std::string file);

  void take(const engine::Event& event) override;

 private:
  struct Case {
    engine::TestStarted test;
    std::string findings;   ///< what a failure's text says: diagnoses, warnings, errors, actions
    std::string errorType;  ///< of the last one
    std::string errorText;
    LongText output;
    LongText errors;
  };
  struct Counts {
    std::uint64_t tests = 0;
    std::uint64_t failures = 0;
    std::uint64_t errors = 0;
    std::uint64_t skipped = 0;
  };
  class Collecting;  ///< what each kind of event adds

  void endCase(std::uint64_t test, const engine::Ended& end);
  void tellUnfinished(const engine::Ended& end);
  void endRun(const engine::Ended& end);
  std::string uniqueName(const Case& one);
  std::string outputsOf(const Case& one) const;
  std::string verdictElement(const Case& one, const engine::Ended& end);
  std::string properties() const;
  std::string suiteAttributes(double seconds) const;

  LineWriter m_lines;
  engine::RunStarted m_run;
  engine::Time m_began;
  bool m_hasBegun = false;
  bool m_hasEnded = false;
  Case m_runItself;
  std::map<std::uint64_t, Case> m_open;
  std::map<std::uint64_t, std::string> m_done;  ///< the elements of the cases
  IdSet m_ended;
  std::set<std::string> m_names;  ///< those that cases have, with their class names
  Counts m_counts;
  std::size_t m_size = 0;  ///< of all elements that are done
};

}  // namespace reports
