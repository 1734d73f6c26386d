#include "tests/reports/html/SampleRuns.h"

#include <cmath>
#include <sstream>

#include "reports/html/HtmlReport.h"

namespace reports::samples {

using engine::Outcome;
using engine::Severity;
using engine::Verdict;

Script& Script::add(std::uint64_t test, engine::Body body, double secondsLater) {
  m_now += std::chrono::microseconds(static_cast<std::int64_t>(secondsLater * 1e6));
  m_events.push_back({m_events.size(), m_now, engine::Source::kEngine, test, std::move(body)});
  return *this;
}

std::string pageOf(const std::vector<engine::Event>& events, const HtmlLimits& limits) {
  std::ostringstream out;
  HtmlReport report(out, "page.html", limits);
  for (const engine::Event& event : events) report.take(event);
  report.finish();
  return out.str();
}

engine::RunStarted workstation(std::uint64_t tests) {
  return {"1.0.0",
          {"diags", "run", "--all"},
          {{"seed", "5"}},
          "bench-07",
          "F22 (2026-03-14)",
          {{"system", "Workstation T40", "", "Aurora Computers", "T40", "B", "AC-40-118273"},
           {"processor", "CPU 0: Example(R) Silicon(R) Processor E7", "Socket 0", "Example Silicon",
            "E7 8-core", "", ""},
           {"memory", "DIMM A1", "P0 channel A", "Kestrel", "KS-16G-5600", "", "K1180023"},
           {"memory", "DIMM B1", "P0 channel B", "Kestrel", "KS-16G-5600", "", "K1180024"},
           {"disk", "nvme0", "M.2 slot 1", "Halden", "HX 2 TB", "3B2", "HX23-0099A"}},
          tests};
}

engine::TestStarted memoryTest(std::uint64_t repetition) {
  return {"DIAGS: Memory Test,mem0,System Memory",
          "DIAGS: Memory Test",
          "mem0",
          "System Memory",
          repetition,
          30};
}

engine::TestStarted processorTest(std::uint64_t repetition) {
  return {"DIAGS: Processor Test,cpu0,E7 8-core",
          "DIAGS: Processor Test",
          "cpu0",
          "E7 8-core",
          repetition,
          20};
}

engine::Ended ended(Outcome outcome, const std::string& text, double seconds) {
  return {outcome, text, seconds, "", "", ""};
}

std::vector<engine::Event> soundRun() {
  Script script;
  script.add(0, workstation(2), 0)
      .add(1, memoryTest())
      .add(1, engine::StepStarted{"Walking ones and zeros"})
      .add(1, engine::Measurement{"Bandwidth", 17.8, "GiB/s", 8.0, {}, "System Memory"})
      .add(1, engine::StepStarted{"Random patterns"}, 12)
      .add(1, engine::OutputLine{engine::Stream::kOutput, "pattern 5 of 5", false}, 9)
      .add(1, engine::Ended{Outcome::kPassed, "Pass", 28.4, "(Pass)",
                            "Tested 256 MiB of 23.5 GiB (1.1 %)",
                            "Tested 256 MiB of 23.5 GiB (1.1 %), 5 patterns, 0 errors\n"
                            "Walking ones and zeros: 2.0 GiB at 1.8 GiB/s, 0 errors"})
      .add(2, processorTest())
      .add(2, engine::Measurement{"Temperature", 61.0, "\u00b0C", {}, 95.0, "cpu0"}, 15)
      .add(2, engine::Measurement{"Threads", 16.0, "", {}, {}, "cpu0"})
      .add(2, engine::Ended{Outcome::kPassed, "Pass", 16.2, "(Pass)", "Tested 16 of 16 threads",
                            "Tested 16 of 16 threads"})
      .add(0, ended(Outcome::kPassed, "", 44.6));
  return script.events();
}

std::vector<engine::Event> faultyRun() {
  Script script;
  script.add(0, workstation(5), 0)
      .add(1, memoryTest())
      .add(1, engine::StepStarted{"Walking ones and zeros"}, 0)
      .add(1, engine::Measurement{"Bandwidth", 6.2, "GiB/s", 8.0, 40.0, "System Memory"}, 9)
      .add(1, engine::Diagnosis{Verdict::kFail,
                                "4 bits do not keep a 1 at 0x1f3a77c40",
                                "DIMM B1",
                                {"Replace the memory module DIMM B1 (P0 channel B).",
                                 "Run the memory test again."}})
      .add(1, engine::Diagnosis{Verdict::kPass, "", "DIMM A1", {}}, 0)
      .add(1, engine::LogLine{0, "memory: 4 errors at 0x1f3a77c40"}, 0)
      .add(1, engine::LogLine{2, "memory: went on with the next pattern"}, 0)
      .add(1, engine::OutputLine{engine::Stream::kError, "4 errors", false}, 0)
      .add(1,
           engine::Ended{Outcome::kFailed, "Fail", 21.7, "(Fail)",
                         "Tested 256 MiB of 32.0 GiB (0.8 %), 4 errors",
                         "Walking ones: 4 errors\nfirst at 0x1f3a77c40"},
           11)
      .add(2, processorTest());
  for (int i = 0; i < 12; ++i) {
    script.add(2, engine::Measurement{"Temperature", 55 + 3.4 * i, "\u00b0C", {}, 95.0, "cpu0"});
  }
  script
      .add(2, engine::Message{Severity::kWarning,
                              "The processor came close to its limit.",
                              {"Clean the fan, and see whether the cooler sits well."}})
      .add(2,
           engine::Ended{Outcome::kWarned, "Pass", 13.4, "(Pass)", "Tested 16 of 16 threads", ""})
      .add(3, engine::TestStarted{"Halden: Disk Check,nvme0,HX 2 TB", "Halden: Disk Check", "nvme0",
                                  "HX 2 TB", 1, 60})
      .add(3, engine::Progress{35}, 8)
      .add(3, engine::Error{engine::Cause::kCrashed,
                            "Segmentation fault",
                            11,
                            "HaldenDisk",
                            "invokeMethod RunDiagnosticService",
                            {"libhalden.so", "libc.so.6"}})
      .add(3, ended(Outcome::kBroken, "", 9.1))
      .add(4,
           engine::TestStarted{"Halden: Surface Scan,nvme0,HX 2 TB", "Halden: Surface Scan",
                               "nvme0", "HX 2 TB", 1, 600},
           0)
      .add(4, ended(Outcome::kSkipped, "It writes to the disk; say --allow-destructive.", 0), 0)
      .add(5,
           engine::TestStarted{"DIAGS: Port Test,eth0,Ethernet", "DIAGS: Port Test", "eth0",
                               "Ethernet", 1, 5},
           0)
      .add(5, engine::Measurement{"Link up", true, "", {}, {}, "eth0"})
      .add(5, engine::Ended{Outcome::kPassed, "Pass", 2.2, "(Pass)", "1 Gbit/s, full duplex", ""})
      .add(0, engine::LogLine{1, "The library libhalden.so was left out after it crashed"}, 0)
      .add(0, ended(Outcome::kFailed, "", 50.2), 0);
  return script.events();
}

std::vector<engine::Event> burnIn() {
  Script script;
  script.add(0, workstation(80), 0);
  for (std::uint64_t i = 0; i < 40; ++i) {
    const auto n = static_cast<double>(i);
    const bool isHot = i > 34;
    script.add(2 * i + 1, memoryTest(i + 1))
        .add(2 * i + 1, engine::Measurement{"Bandwidth", 17 + std::sin(n), "GiB/s", 8.0, {}, ""},
             25)
        .add(2 * i + 1, ended(Outcome::kPassed, "Pass", 26))
        .add(2 * i + 2, processorTest(i + 1))
        .add(2 * i + 2, engine::Measurement{"Temperature", 60 + n, "\u00b0C", {}, 95.0, "cpu0"}, 15)
        .add(2 * i + 2,
             ended(isHot ? Outcome::kFailed : Outcome::kPassed, isHot ? "Fail" : "Pass", 16));
  }
  script.add(0, ended(Outcome::kFailed, "", 1740));
  return script.events();
}

std::vector<engine::Event> runOf(const std::string& text) {
  Script script;
  script
      .add(0,
           engine::RunStarted{text,
                              {text},
                              {{text, text}},
                              text,
                              text,
                              {{text, text, text, text, text, text, text}},
                              1},
           0)
      .add(1, engine::TestStarted{text, text, text, text, 2, 1})
      .add(1, engine::StepStarted{text})
      .add(1, engine::OutputLine{engine::Stream::kError, text, true})
      .add(1, engine::LogLine{0, text})
      .add(1, engine::Message{Severity::kError, text, {text}})
      .add(1, engine::Measurement{text, text, text, {}, {}, text})
      .add(1, engine::Measurement{text + "2", 3.0, text, 1.0, 2.0, text})
      .add(1, engine::Diagnosis{Verdict::kFail, text, text, {text}})
      .add(1, engine::Error{engine::Cause::kOther, text, 1, text, text, {text}})
      .add(1, engine::Ended{Outcome::kFailed, text, 1, text, text, text})
      .add(0, engine::LogLine{1, text})
      .add(0, engine::Ended{Outcome::kFailed, text, 1, text, text, text});
  return script.events();
}

std::vector<engine::Event> cutOffRun() {
  Script script;
  script.add(0, workstation(2), 0)
      .add(1, processorTest())
      .add(1, ended(Outcome::kPassed, "Pass", 16), 16)
      .add(2, memoryTest())
      .add(2, engine::Progress{42}, 12);
  return script.events();
}

}  // namespace reports::samples
