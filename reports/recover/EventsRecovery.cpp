#include "engine/events/EventLine.h"
#include "reports/recover/OpenEnds.h"
#include "reports/recover/StreamEnd.h"

namespace reports {
namespace {

class EventsEnd : public StreamEnd {
 public:
  void take(std::string_view line) override { m_ends.take(engine::eventFrom(line)); }

  void close(Recovery& recovery) const override {
    recovery.format = StreamFormat::kEvents;
    recovery.open = m_ends.open();
    for (const engine::Event& event : m_ends.closing()) {
      recovery.closing.push_back(engine::lineOf(event));
    }
  }

 private:
  OpenEnds m_ends;
};

}  // namespace

std::unique_ptr<StreamEnd> makeEventsEnd() { return std::make_unique<EventsEnd>(); }

}  // namespace reports
