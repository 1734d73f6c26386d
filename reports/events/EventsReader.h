#pragma once

#include <istream>
#include <optional>
#include <string>

#include "engine/events/Event.h"
#include "reports/common/LineReader.h"

namespace reports {

/// Reads a stream of events up to its last whole line. The stream must outlive it, and is opened as
/// binary.
class EventsReader {
 public:
  /// `file` is the name that faults are told with.
  EventsReader(std::istream& in, std::string file);

  /// The next event; nothing at the end, or where the last line has been cut off. Throws
  /// `std::runtime_error` that names the file and the line of what is no event; those behind it can
  /// still be asked for.
  std::optional<engine::Event> next();

  bool wasCut() const { return m_wasCut; }  ///< the end was reached, and is no line's end

 private:
  LineReader m_lines;
  bool m_wasCut = false;
};

}  // namespace reports
