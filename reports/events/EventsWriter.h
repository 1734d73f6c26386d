#pragma once

#include <ostream>
#include <string>

#include "engine/events/EventSink.h"
#include "reports/common/LineWriter.h"

namespace reports {

/// Writes each event as its line.
class EventsWriter : public engine::EventSink {
 public:
  /// The stream must outlive it; `file` is its name.
  EventsWriter(std::ostream& out, std::string file);

  void take(const engine::Event& event) override;

 private:
  LineWriter m_lines;
};

}  // namespace reports
