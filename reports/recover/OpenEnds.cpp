#include "reports/recover/OpenEnds.h"

#include <utility>

#include "reports/recover/StreamEnd.h"

namespace reports {

using engine::Outcome;

void OpenEnds::take(const engine::Event& event) {
  m_next = event.sequence + 1;
  m_time = event.time;
  const auto* const end = std::get_if<engine::Ended>(&event.body);
  if (event.test == 0) {
    m_hasEnded = m_hasEnded || end != nullptr;
    return;
  }
  if (end == nullptr) {
    m_open.insert(event.test);
    return;
  }
  m_open.erase(event.test);
  m_hasFailure = m_hasFailure || end->outcome == Outcome::kFailed;
}

std::vector<engine::Event> OpenEnds::closing() const {
  std::vector<engine::Event> events;
  if (m_hasEnded) return events;
  std::uint64_t sequence = m_next;
  const auto add = [&](std::uint64_t test, engine::Body body) {
    events.push_back({sequence++, m_time, engine::Source::kEngine, test, std::move(body)});
  };
  for (const std::uint64_t test : m_open) {
    add(test, engine::Error{engine::Cause::kOther, kTestCutOff, 0, "", "", {}});
    add(test, engine::Ended{Outcome::kBroken, kTestCutOff, 0, "", "", ""});
  }
  add(0, engine::Error{engine::Cause::kOther, kRunCutOff, 0, "", "", {}});
  // A failure that was found outranks what was not finished.
  const Outcome outcome = m_hasFailure ? Outcome::kFailed : Outcome::kBroken;
  add(0, engine::Ended{outcome, kRunCutOff, 0, "", "", ""});
  return events;
}

}  // namespace reports
