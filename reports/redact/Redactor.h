#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "engine/events/EventSink.h"
#include "reports/redact/Secrets.h"

namespace reports {

/// Has the secrets know the names of that run's machine, and takes them out of the members that are
/// such a name and nothing else.
void learnMachine(Secrets& secrets, engine::RunStarted& run);

/// Stands in front of another sink, and takes out of each text of each event what tells one machine
/// from another: serial numbers, the host's name, hardware addresses. The same value has the same
/// replacement throughout a run; with one redactor in front of all writers, in all formats. It
/// numbers the events itself.
class Redactor : public engine::EventSink {
 public:
  /// `next` must outlive it.
  explicit Redactor(engine::EventSink& next) : m_next(next) {}

  void take(const engine::Event& event) override;

 private:
  using Place = std::pair<std::uint64_t, engine::Stream>;

  void pass(engine::Event event);
  std::string withoutLastWord(const engine::Event& event, const engine::OutputLine& line);
  void passHeldBack(const engine::Event& event);

  engine::EventSink& m_next;
  Secrets m_secrets;
  std::uint64_t m_sequence = 0;
  /// The last word of a part of a line, which may go on in the next part.
  std::map<Place, std::string> m_heldBack;
};

}  // namespace reports
