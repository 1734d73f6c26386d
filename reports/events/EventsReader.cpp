#include "reports/events/EventsReader.h"

#include <stdexcept>
#include <utility>

#include "engine/events/EventLine.h"
#include "reports/common/Excerpt.h"

namespace reports {

EventsReader::EventsReader(std::istream& in, std::string file) : m_lines(in, std::move(file)) {}

std::optional<engine::Event> EventsReader::next() {
  if (!m_lines.next()) return std::nullopt;
  if (!m_lines.isWhole()) {
    m_wasCut = true;
    return std::nullopt;
  }
  if (m_lines.isTooLong()) throw std::runtime_error(m_lines.where() + ": the line is too long");
  try {
    return engine::eventFrom(m_lines.line());
  } catch (const engine::NoEvent& fault) {
    throw std::runtime_error(m_lines.where() + ": " + excerpt(fault.what()));
  }
}

}  // namespace reports
