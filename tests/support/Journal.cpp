#include "tests/support/Journal.h"

#include <algorithm>

#include "tests/support/Text.h"

namespace support {

Journal& Journal::current() {
  static Journal journal;
  return journal;
}

void Journal::add(Kind kind, const std::string& text) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  closeOutput();
  m_events.push_back({kind, text});
}

void Journal::write(const char* text, std::size_t length) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_pending.append(text, length);
  m_output.append(text, length);
}

void Journal::flush() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  closeOutput();
  m_events.push_back({Kind::flush, flushed()});
}

void Journal::clear() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_events.clear();
  m_pending.clear();
  m_output.clear();
}

std::vector<Event> Journal::events() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  closeOutput();
  return m_events;
}

std::string Journal::select(std::initializer_list<Kind> kinds) {
  std::string text;
  for (const Event& event : events()) {
    if (std::find(kinds.begin(), kinds.end(), event.kind) != kinds.end()) {
      text += event.text + "\n";
    }
  }
  return text;
}

std::string Journal::all() {
  return select(
      {Kind::framework, Kind::os, Kind::log, Kind::output, Kind::flush, Kind::sleep, Kind::file});
}

std::string Journal::allButFlushes() {
  return select({Kind::framework, Kind::os, Kind::log, Kind::output, Kind::sleep, Kind::file});
}

std::string Journal::output() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  return m_output;
}

int Journal::countOf(const std::string& text) {
  const std::vector<Event> all = events();
  return static_cast<int>(std::count_if(all.begin(), all.end(),
                                        [&](const Event& event) { return event.text == text; }));
}

void Journal::closeOutput() {
  if (!m_pending.empty()) {
    m_events.push_back({Kind::output, out(m_pending)});
    m_pending.clear();
  }
}

}  // namespace support
