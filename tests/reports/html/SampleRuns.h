#pragma once

#include <string>
#include <utility>
#include <vector>

#include "engine/events/Event.h"
#include "reports/html/HtmlLimits.h"
#include "tests/reports/html/HostileTexts.h"

/// Runs to make pages of.
namespace reports::samples {

/// Puts events in their places: a second apart, numbered, at a fixed date.
class Script {
 public:
  Script& add(std::uint64_t test, engine::Body body, double secondsLater = 1);
  const std::vector<engine::Event>& events() const { return m_events; }

 private:
  std::vector<engine::Event> m_events;
  engine::Time m_now{std::chrono::microseconds(1'795'000'000'000'000)};
};

/// A page of those events; of a stream that was cut off where they have no end.
std::string pageOf(const std::vector<engine::Event>& events, const HtmlLimits& limits = {});

engine::RunStarted workstation(std::uint64_t tests);
engine::TestStarted memoryTest(std::uint64_t repetition = 1);
engine::TestStarted processorTest(std::uint64_t repetition = 1);
engine::Ended ended(engine::Outcome outcome, const std::string& text, double seconds = 1);

/// Two tests that passed.
std::vector<engine::Event> soundRun();
/// One of everything: a fault, a crash, a warning, a pass.
std::vector<engine::Event> faultyRun();
/// Forty repetitions, with a measurement that drifts beyond its limit.
std::vector<engine::Event> burnIn();
/// Every text is `text`.
std::vector<engine::Event> runOf(const std::string& text);
/// It stops in the middle of a test.
std::vector<engine::Event> cutOffRun();

}  // namespace reports::samples
