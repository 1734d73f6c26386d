#pragma once

#include <memory>
#include <string>

#include "engine/events/EventSink.h"
#include "history/History.h"

namespace history {

class RunWriter;

/// Keeps the events of one run, as they come. What it has taken is on the disk at the beginning and
/// the end of each test, and else with the first event that comes after a second or a quarter of a
/// megabyte. A run whose recorder goes before its
/// end counts as cut off. The history must outlive it.
class Recorder final : public engine::EventSink {
 public:
  /// Throws `HistoryError` where the history may only be read.
  explicit Recorder(History& history);
  ~Recorder() override;

  /// Throws `HistoryError`, and `std::bad_alloc`.
  void take(const engine::Event& event) override;

  /// The run's identifier; empty before its first event.
  const std::string& id() const;

 private:
  Store& m_store;
  std::unique_ptr<RunWriter> m_run;
};

}  // namespace history
