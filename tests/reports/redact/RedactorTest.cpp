#include <gtest/gtest.h>

#include <sstream>

#include "engine/events/EventLine.h"
#include "reports/events/EventsWriter.h"
#include "reports/junit/JUnitWriter.h"
#include "reports/metrics/MetricsWriter.h"
#include "reports/ocp/OcpWriter.h"
#include "reports/redact/Redactor.h"
#include "tests/reports/SampleRun.h"

namespace reports {
namespace {

using engine::OutputLine;
using engine::Stream;

class Keep : public engine::EventSink {
 public:
  void take(const engine::Event& event) override { events.push_back(event); }
  std::vector<engine::Event> events;
};

std::vector<engine::Event> redacted(const std::vector<engine::Event>& events) {
  Keep keep;
  Redactor redactor(keep);
  for (const engine::Event& event : events) redactor.take(event);
  return keep.events;
}

/// A run that says its secrets in each text of each event.
std::vector<engine::Event> talkative() {
  const std::string text = "at bench-7 the module 0xCAFE01 with 00:1a:2b:3c:4d:5e, Serial: QQ-99";
  std::vector<engine::Event> events = runOf(text);
  auto run = std::get<engine::RunStarted>(events.front().body);
  const auto machine = std::get<engine::RunStarted>(sampleRun().front().body);
  run.host = machine.host;
  run.parts.front().serial = machine.parts.front().serial;
  run.parts.push_back(run.parts.front());
  run.parts.back().serial = machine.parts.back().serial;
  events.front().body = run;
  return events;
}

TEST(Redactor, LeavesNoSecretInAnyTextOfAnyFormat) {
  const std::vector<engine::Event> events = redacted(talkative());
  for (const std::string& report : {written<EventsWriter>(events), written<OcpWriter>(events),
                                    written<JUnitWriter>(events), written<MetricsWriter>(events)}) {
    for (const char* secret : {"bench-7", "CAFE01", "SN-4711", "00:1a", "QQ-99"}) {
      EXPECT_EQ(report.find(secret), std::string::npos) << secret;
    }
    for (const char* replacement : {"host-1", "serial-1", "serial-2", "address-1"}) {
      EXPECT_NE(report.find(replacement), std::string::npos) << replacement;
    }
  }
}

TEST(Redactor, LeavesAllElseAsItIs) {
  EventList run;
  run.add(0, engine::RunStarted{"1.0", {"diags"}, {}, "", "F1", {}, 1}).begin(1);
  run.add(1, engine::Measurement{"m", 1.5, "u", 1.0, 2.0, "p"}).add(1, engine::Progress{50});
  run.add(1, OutputLine{Stream::kOutput, "text \xFF\x1b", false});
  run.end(1, engine::Outcome::kPassed, "Pass").end(0, engine::Outcome::kPassed);
  EXPECT_EQ(written<EventsWriter>(redacted(run.events())), written<EventsWriter>(run.events()));
}

std::string outputOf(const std::vector<engine::Event>& events) {
  std::string text;
  for (const engine::Event& event : redacted(events)) {
    if (const auto* const line = std::get_if<OutputLine>(&event.body)) text += line->text;
  }
  return text;
}

TEST(Redactor, FindsWhatALongLineWasSplitAt) {
  EventList run;
  run.add(0, sampleRun().front().body).begin(1);
  run.add(1, OutputLine{Stream::kOutput, "module 0xCA", true});
  run.add(1, OutputLine{Stream::kOutput, "FE01 failed", false});
  EXPECT_EQ(outputOf(run.events()), "module serial-2 failed");
}

TEST(Redactor, LosesNothingOfALineThatIsNeverFinished) {
  EventList run;
  run.add(0, sampleRun().front().body).begin(1).begin(2);
  run.add(1, OutputLine{Stream::kOutput, "module 0xCAFE01", true});
  run.add(2, OutputLine{Stream::kOutput, ", other", false});
  run.end(1, engine::Outcome::kBroken).end(2, engine::Outcome::kPassed);
  EXPECT_EQ(outputOf(run.events()), "module , otherserial-2");
  std::uint64_t sequence = 0;
  for (const engine::Event& event : redacted(run.events())) EXPECT_EQ(event.sequence, sequence++);
}

TEST(Redactor, AHostThatIsNamedLikeItsReplacementIsReplacedOnce) {
  EventList run;
  run.add(0, engine::RunStarted{"", {"root@host", "every host"}, {}, "host", "", {}, 0});
  const auto start = std::get<engine::RunStarted>(redacted(run.events()).front().body);
  EXPECT_EQ(start.host, "host-1");
  EXPECT_EQ(start.commandLine, (std::vector<std::string>{"root@host-1", "every host"}));
}

}  // namespace
}  // namespace reports
