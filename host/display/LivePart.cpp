#include "host/display/LivePart.h"

#include <ostream>

namespace host {

void LivePart::show(const std::vector<std::string>& lines) {
  clear();
  for (std::size_t i = 0; i < lines.size(); ++i) m_out << (i == 0 ? "" : "\n") << lines[i];
  m_shown = lines.size();
}

void LivePart::clear() {
  if (m_shown == 0) return;
  m_out << '\r';
  if (m_shown > 1) m_out << "\x1b[" << m_shown - 1 << 'A';
  m_out << "\x1b[J";
  m_shown = 0;
}

void LivePart::leave() {
  if (m_shown > 0) m_out << '\n';
  m_shown = 0;
}

}  // namespace host
