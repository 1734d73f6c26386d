#pragma once

#include <string>
#include <vector>

#include "engine/events/Event.h"
#include "tests/text/HostileTexts.h"

/// Events for the tests of writers and readers.
namespace reports {

/// Numbers events as they are added, each a millisecond behind the one before it.
class EventList {
 public:
  EventList& add(std::uint64_t test, engine::Body body);

  /// Begins test 1, 2 and so on of the "Memory Test" service, or ends it.
  EventList& begin(std::uint64_t test);
  EventList& end(std::uint64_t test, engine::Outcome outcome, const std::string& text = "");

  const std::vector<engine::Event>& events() const { return m_events; }

 private:
  std::vector<engine::Event> m_events;
};

/// A whole run with something of each kind: a test that passes, one that fails and one that
/// crashes, the latter two at the same time, one that was skipped and one that the user ended.
std::vector<engine::Event> sampleRun();

/// A run of two tests at the same time, of a few short lines: small enough to be cut at every byte.
std::vector<engine::Event> shortRun();

/// A run in which each text of each event is that one.
std::vector<engine::Event> runOf(const std::string& text);

/// A test whose name has 10 MB, and which writes a line of 10 MB.
std::vector<engine::Event> longRun();

/// A run that measures something in each kind of unit.
std::vector<engine::Event> measuringRun();

using text::HostileText;
using text::hostileTexts;

/// The run as a writer writes it, which is constructed with a stream and a file's name.
template <typename Writer>
std::string written(const std::vector<engine::Event>& events);

}  // namespace reports

#include <sstream>

template <typename Writer>
std::string reports::written(const std::vector<engine::Event>& events) {
  std::ostringstream out;
  Writer writer(out, "file");
  for (const engine::Event& event : events) writer.take(event);
  return out.str();
}
