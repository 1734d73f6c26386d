#include "reports/events/EventsWriter.h"

#include <utility>

#include "engine/events/EventLine.h"

namespace reports {

EventsWriter::EventsWriter(std::ostream& out, std::string file) : m_lines(out, std::move(file)) {}

void EventsWriter::take(const engine::Event& event) { m_lines.write(engine::lineOf(event)); }

}  // namespace reports
