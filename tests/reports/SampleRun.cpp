#include "tests/reports/SampleRun.h"

#include <utility>

namespace reports {

using namespace engine;

EventList& EventList::add(std::uint64_t test, Body body) {
  constexpr std::int64_t kBegin = 1'790'000'000'000'000;
  Event event;
  event.sequence = m_events.size();
  event.time = Time(std::chrono::microseconds(kBegin + 1000 * event.sequence));
  event.test = test;
  event.body = std::move(body);
  m_events.push_back(std::move(event));
  return *this;
}

EventList& EventList::begin(std::uint64_t test) {
  const std::string device = "mem" + std::to_string(test);
  return add(test, TestStarted{"DIAGS: Memory Test," + device + ",Memory", "DIAGS: Memory Test",
                               device, "Memory", 1, 30});
}

EventList& EventList::end(std::uint64_t test, Outcome outcome, const std::string& text) {
  return add(test, Ended{outcome, text, 1.5, "", "", ""});
}

std::vector<Event> sampleRun() {
  const Part board{"system", "Board 5", "", "Maker", "B5", "1.1", "SN-4711"};
  const Part module{"memory", "DIMM 1", "P0 CHANNEL A", "Maker", "M-16", "", "0xCAFE01"};
  EventList run;
  run.add(0, RunStarted{"1.0.0",
                        {"diags", "run", "--all", "a b", ""},
                        {{"seed", "5"}},
                        "bench-7",
                        "F1.02",
                        {board, module},
                        5});
  run.begin(1).add(1, StepStarted{"Walking ones"}).add(1, Progress{50});
  run.add(1, OutputLine{Stream::kOutput, "probing", false});
  run.add(1, OutputLine{Stream::kError, "careful", false}).add(1, LogLine{1, "a warning"});
  run.add(1, Message{Severity::kInfo, "All well.", {}});
  run.add(1, Measurement{"bandwidth", 11.25, "GiB/s", 5.0, 40.0, "DIMM 1"});
  run.add(1, Measurement{"locked", true, "", {}, {}, ""});
  run.add(1, Measurement{"mode", std::string("fast"), "", {}, {}, "Bank 5"});
  run.add(1, Ended{Outcome::kPassed, "Pass", 2.25, "(Pass)", "0 errors", "a record\nof two lines"});
  run.begin(2).begin(3);
  run.add(2, Diagnosis{Verdict::kFail, "bit 5 stuck", "DIMM 1", {"Replace DIMM 1."}});
  run.add(3, Error{Cause::kCrashed, "The worker crashed.", 11, "Mem", "invoke", {"libm.so"}});
  run.add(2, Error{Cause::kExited, "The worker ended itself.", 3, "", "", {}});
  run.end(3, Outcome::kBroken).add(2, Ended{Outcome::kFailed, "Fail", 3, "", "1 error", ""});
  run.add(0, Message{Severity::kWarning, "A provider was left out.", {"Look at it."}});
  run.add(0, Error{Cause::kOther, "A log cannot be written.", 0, "", "", {}});
  run.begin(4).end(4, Outcome::kSkipped, "no such device").begin(5).end(5, Outcome::kAborted);
  run.end(0, Outcome::kFailed, "Fail");
  return run.events();
}

std::vector<Event> shortRun() {
  EventList run;
  run.add(0, RunStarted{"1", {}, {}, "", "", {}, 2}).begin(1).begin(2);
  run.add(2, Diagnosis{Verdict::kFail, "\xC3\xA4\"", "", {}}).end(2, Outcome::kFailed);
  run.end(1, Outcome::kPassed).end(0, Outcome::kFailed);
  return run.events();
}

std::vector<Event> runOf(const std::string& t) {
  const Part part{t, t, t, t, t, t, t};
  EventList run;
  run.add(0, RunStarted{t, {t}, {{t, t}}, t, t, {part}, 1});
  run.add(1, TestStarted{t, t, t, t, 2, 1}).add(1, StepStarted{t});
  run.add(1, OutputLine{Stream::kOutput, t, true}).add(1, OutputLine{Stream::kError, t, false});
  run.add(1, LogLine{0, t}).add(1, Message{Severity::kError, t, {t}});
  run.add(1, Measurement{t, t, t, 1.0, 2.0, t}).add(1, Measurement{t, 1.5, t, 1.0, 2.0, t});
  run.add(1, Error{Cause::kCrashed, t, 1, t, t, {t}});
  run.add(1, Diagnosis{Verdict::kFail, t, t, {t}}).add(0, Message{Severity::kInfo, t, {t}});
  run.add(1, Ended{Outcome::kFailed, t, 1, t, t, t}).add(0, Error{Cause::kOther, t, 1, t, t, {t}});
  run.add(2, TestStarted{t, t, t, t, 3, 1}).add(2, Ended{Outcome::kSkipped, t, 1, t, t, t});
  run.add(0, Ended{Outcome::kFailed, t, 1, t, t, t});
  return run.events();
}

std::vector<Event> longRun() {
  const std::string text(10'000'000, '"');
  EventList run;
  run.add(1, TestStarted{text, "S", "d", "e", 1, 0})
      .add(1, OutputLine{Stream::kOutput, text, true});
  run.end(1, Outcome::kPassed).end(0, Outcome::kPassed);
  return run.events();
}

std::vector<Event> measuringRun() {
  EventList run;
  run.add(0, RunStarted{"1", {"diags"}, {}, "", "", {}, 1}).begin(1);
  for (const char* unit : {"s", "MiB", "GiB/s", "Mbit/s", "GT/s", "degree C", "%", "1/min", "1/s",
                           "GHz", "mV", "A", "W", "J", "", "furlong"}) {
    run.add(1, Measurement{"In " + std::string(unit), 2.5, unit, 1.0, 2.0, "DIMM 1"});
  }
  run.end(1, Outcome::kPassed).end(0, Outcome::kPassed);
  return run.events();
}

}  // namespace reports
