#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "engine/events/EventSink.h"
#include "host/options/Options.h"

namespace host {

/// Hands each event to several sinks; one that fails costs no other one, and is told at the end.
class Fan : public engine::EventSink {
 public:
  void add(engine::EventSink& sink) { m_sinks.push_back(&sink); }
  bool isEmpty() const { return m_sinks.empty(); }
  void take(const engine::Event& event) override;
  const std::vector<std::string>& failures() const { return m_failures; }

 private:
  std::vector<engine::EventSink*> m_sinks;
  std::vector<std::string> m_failures;
};

/// The files that a run is written to, all redacted alike where that was asked for.
class ReportSinks : public engine::EventSink {
 public:
  /// Opens the files, and leaves what is in them until the first event comes; without one, nothing
  /// is left of them. Throws `UsageError` that names the one that cannot be written, or where two
  /// are to be one file or standard output.
  ReportSinks(const ReportFiles& files, bool redacts);
  ~ReportSinks() override;

  void take(const engine::Event& event) override;

  /// Writes what is still to be written of a stream that was cut off. The files that could not be
  /// written, in words.
  std::vector<std::string> finish();

  /// One of the files is standard output: nothing else may be written there.
  bool takesStandardOutput() const;

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

}  // namespace host
