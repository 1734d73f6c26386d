#pragma once

#include <cstdint>
#include <map>
#include <ostream>
#include <string>

#include "engine/events/EventSink.h"
#include "reports/common/IdSet.h"
#include "reports/common/LineWriter.h"
#include "reports/ocp/OcpDevice.h"
#include "reports/ocp/OcpLine.h"

namespace reports {

/// Writes a run as a stream of the OCP Test & Validation output, version 2.0: each test is a step
/// of one test run. What it writes keeps the rules of such streams whatever the order of the events
/// is: a step that was not begun is, one that is still open when the run ends is closed with an
/// error, and what comes behind a test's end is a log line of the run.
class OcpWriter : public engine::EventSink {
 public:
  /// The stream must outlive it; `file` is its name.
  OcpWriter(std::ostream& out, std::string file);

  void take(const engine::Event& event) override;

 private:
  /// What is known of a test between its beginning and its end.
  struct Step {
    std::string id;
    std::string label;      ///< what its verdicts begin with
    unsigned verdicts = 0;  ///< a bit for each that has been given
    bool hasError = false;
    std::string symptom;  ///< of an error that came behind a verdict
  };
  class Writing;  ///< what each kind of event becomes

  void begin(const engine::RunStarted& run);
  Step& begin(std::uint64_t test, const engine::TestStarted& start);
  void takeOfTest(const engine::Event& event);
  void takeOfRun(const engine::Event& event);
  void endTest(std::uint64_t test, const engine::Ended& end);
  void endRun(const engine::Ended& end);

  /// Writes an artifact of the step, or of the run where there is none, which `fill` fills.
  template <typename Fill>
  void write(const Step* step, const char* artifact, const Fill& fill);
  void log(const Step* step, const char* severity, const std::string& text);
  void error(const Step* step, const std::string& symptom, const std::string& text);

  LineWriter m_lines;
  OcpDevice m_device;
  std::uint64_t m_sequence = 0;
  std::string m_timestamp;  ///< of the event that is being written
  bool m_hasBegun = false;
  bool m_hasEnded = false;
  std::map<std::uint64_t, Step> m_open;
  IdSet m_ended;
};

}  // namespace reports
