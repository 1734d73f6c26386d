#include <set>
#include <utility>

#include "engine/events/EventLine.h"
#include "reports/recover/StreamEnd.h"

namespace reports {
namespace {

using engine::Outcome;

class EventsEnd : public StreamEnd {
 public:
  void take(std::string_view line) override {
    const engine::Event event = engine::eventFrom(line);
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

  void close(Recovery& recovery) const override {
    recovery.format = StreamFormat::kEvents;
    recovery.open = m_hasEnded ? 0 : m_open.size();
    if (m_hasEnded) return;
    std::uint64_t sequence = m_next;
    const auto add = [&](std::uint64_t test, engine::Body body) {
      recovery.closing.push_back(
          engine::lineOf({sequence++, m_time, engine::Source::kEngine, test, std::move(body)}));
    };
    for (const std::uint64_t test : m_open) {
      add(test, engine::Error{engine::Cause::kOther, kTestCutOff, 0, "", "", {}});
      add(test, engine::Ended{Outcome::kBroken, kTestCutOff, 0, "", "", ""});
    }
    add(0, engine::Error{engine::Cause::kOther, kRunCutOff, 0, "", "", {}});
    // A failure that was found outranks what was not finished.
    const Outcome outcome = m_hasFailure ? Outcome::kFailed : Outcome::kBroken;
    add(0, engine::Ended{outcome, kRunCutOff, 0, "", "", ""});
  }

 private:
  std::uint64_t m_next = 0;
  engine::Time m_time;
  std::set<std::uint64_t> m_open;
  bool m_hasEnded = false;
  bool m_hasFailure = false;
};

}  // namespace

std::unique_ptr<StreamEnd> makeEventsEnd() { return std::make_unique<EventsEnd>(); }

}  // namespace reports
