#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/events/Event.h"

/// What the history answers. Texts are as they came; whoever shows them makes them safe.
namespace history {

enum class RunState : std::uint8_t {
  kEnded,
  kRunning,  ///< somebody still writes it
  kCutOff    ///< it never ended, and nobody writes it any more
};

/// How many runs of tests came to which end.
struct Counts {
  std::uint64_t passed = 0;
  std::uint64_t warned = 0;
  std::uint64_t failed = 0;
  std::uint64_t unfinished = 0;  ///< aborted, incomplete or broken
  std::uint64_t skipped = 0;
};

struct RunRecord {
  std::string id;
  RunState state = RunState::kCutOff;
  engine::Time started;
  std::optional<engine::Time> ended;
  std::optional<engine::Outcome> outcome;
  std::string host;
  std::string version;  ///< of the program
  std::string command;  ///< the command line, with blanks between its words
  Counts tests;
  std::uint64_t bytes = 0;    ///< of its events' lines
  std::uint64_t leftOut = 0;  ///< events that were not kept, as the run grew too long
};

/// Which runs; what is not set takes them all.
struct RunFilter {
  std::optional<engine::Time> since;
  std::optional<engine::Time> until;
  std::optional<engine::Outcome> outcome;
  std::string test;  ///< a test identifier or the Name of a service
};

/// How one test ended in a run, all its repetitions together.
struct TestVerdict {
  std::uint64_t repetitions = 0;
  std::optional<engine::Outcome> worst;  ///< nothing: one of them never ended
};

/// One measurement in a run, all its repetitions together.
struct Measured {
  std::uint64_t times = 0;
  std::optional<double> mean;  ///< nothing where it is no number
  std::string text;            ///< then, the last value
};

struct MeasurementDifference {
  std::string name;
  std::string part;
  std::string unit;
  std::optional<Measured> before;  ///< nothing: not measured in that run
  std::optional<Measured> after;
  bool isSame() const;
};

struct TestDifference {
  std::string name;                   ///< the test identifier
  std::optional<TestVerdict> before;  ///< nothing: not in that run
  std::optional<TestVerdict> after;
  std::vector<MeasurementDifference> measurements;
  bool hasSameVerdict() const;
  bool isSame() const;
};

/// Two runs beside each other: every test of either, by name.
struct Difference {
  RunRecord before;
  RunRecord after;
  std::vector<TestDifference> tests;
};

/// A test that some run had.
struct TestName {
  std::string identifier;
  std::string service;  ///< its Name
};

/// A measurement in one run.
struct TrendPoint {
  std::string run;
  engine::Time started;  ///< the run
  std::uint64_t times = 0;
  double mean = 0;
  double least = 0;
  double greatest = 0;
};

/// A measurement over runs, the oldest first.
struct Trend {
  std::string test;  ///< the test identifier
  std::string name;
  std::string part;
  std::string unit;
  std::optional<double> minimum;  ///< what was all right at the last time
  std::optional<double> maximum;
  std::vector<TrendPoint> points;
};

}  // namespace history
