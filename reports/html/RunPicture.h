#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "engine/events/Event.h"
#include "reports/html/Excerpt.h"
#include "reports/html/HtmlLimits.h"
#include "reports/html/Series.h"
#include "reports/html/Timeline.h"

namespace reports::html {

struct Step {
  std::string name;
  engine::Time from;
};

/// What is known of one run of a test, or of the run as a whole.
struct TestPicture {
  explicit TestPicture(const HtmlLimits& limits) : output(limits.lines), log(limits.lines) {}

  std::uint64_t number = 0;
  engine::TestStarted test;
  engine::Time from;
  engine::Time last;  ///< of its latest event
  double percent = 0;
  std::optional<engine::Ended> end;
  std::vector<Step> steps;
  std::vector<engine::Message> messages;
  std::vector<engine::Diagnosis> findings;
  std::vector<engine::Error> errors;
  std::vector<Series> measurements;
  Excerpt output;
  Excerpt log;
  std::uint64_t leftOut = 0;  ///< messages, findings and the like that were too many
  std::size_t bytes = 0;      ///< what their texts take, without output and log
};

/// The measurements that the runs of one test have in common.
struct Trend {
  engine::TestStarted test;
  std::uint64_t lastTest = 0;
  std::uint64_t tests = 0;
  Series series;
};

/// A run as its page shows it, collected from its events within limits.
class RunPicture {
 public:
  using Tests = std::map<std::uint64_t, TestPicture>;
  using Counts = std::array<std::uint64_t, 7>;  ///< by outcome

  explicit RunPicture(const HtmlLimits& limits);

  void take(const engine::Event& event);

  /// No more events come: tests without an end have their place in the timeline, too.
  void close();

  const std::optional<engine::RunStarted>& start() const { return m_start; }
  const std::optional<engine::Ended>& end() const { return m_end; }
  engine::Time from() const { return m_from; }
  engine::Time last() const { return m_last; }

  /// Those that are shown one by one, in their order.
  const Tests& tests() const { return m_tests; }
  /// What concerns no test.
  const TestPicture& whole() const { return m_whole; }

  std::uint64_t ended(engine::Outcome outcome) const { return at(m_ended, outcome); }
  std::uint64_t leftOut(engine::Outcome outcome) const { return at(m_leftOut, outcome); }
  std::uint64_t endedInAll() const;
  std::uint64_t leftOutInAll() const;
  std::uint64_t started() const { return m_started; }

  const Timeline& timeline() const { return m_timeline; }
  const std::vector<Trend>& trends() const { return m_trends; }

 private:
  static std::uint64_t at(const Counts& counts, engine::Outcome outcome) {
    return counts[static_cast<std::size_t>(outcome)];
  }
  void takeForTest(TestPicture& test, const engine::Event& event);
  void takeMeasurement(TestPicture& test, engine::Measurement measurement);
  void follow(const TestPicture& test, const engine::Measurement& measurement);
  void begin(const engine::Event& event, const engine::TestStarted& test);
  void settle(TestPicture& test, const engine::Event& event, const engine::Ended& end);
  void makeRoom();
  void leaveOut(std::uint64_t number);

  HtmlLimits m_limits;
  std::optional<engine::RunStarted> m_start;
  std::optional<engine::Ended> m_end;
  engine::Time m_from;
  engine::Time m_last;
  bool m_hasBegun = false;
  Tests m_tests;
  TestPicture m_whole;
  std::deque<std::uint64_t> m_settledPasses;
  std::deque<std::uint64_t> m_settledOthers;
  std::size_t m_settledBytes = 0;
  std::uint64_t m_started = 0;
  Counts m_ended{};
  Counts m_leftOut{};
  Timeline m_timeline;
  std::vector<Trend> m_trends;
};

}  // namespace reports::html
