#include "tests/engine/events/SampleEvents.h"

namespace engine {
namespace {

Sample sample(const char* name, Body body, const std::string& rest, Source source = Source::kWorker,
              std::uint64_t test = 3) {
  Event event{7, Time(std::chrono::microseconds(1'500'000)), source, test, std::move(body)};
  const char* const sources[] = {"engine", "worker", "provider"};
  std::string line = R"({"sequence":7,"time":"1970-01-01T00:00:01.500000Z","source":")";
  line += sources[static_cast<std::size_t>(source)];
  line += "\",";
  if (test != 0) line += "\"testId\":" + std::to_string(test) + ",";
  return {name, std::move(event), line + rest + "}"};
}

std::vector<Sample> make() {
  const Part module{"memory", "DIMM 2", "P0 CHANNEL B", "A", "B", "C", "D"};
  return {
      sample("ARun",
             RunStarted{"1.0", {"diags", "run"}, {{"seed", "5"}}, "host", "id", {module}, 4},
             R"("run":{"version":"1.0","commandLine":["diags","run"],"parameters":{"seed":"5"},)"
             R"("host":"host","firmware":"id","parts":[{"kind":"memory","name":"DIMM 2",)"
             R"("location":"P0 CHANNEL B","manufacturer":"A","model":"B","version":"C",)"
             R"("serial":"D"}],"tests":4})",
             Source::kEngine, 0),
      sample("ABareRun",
             RunStarted{"1.0", {}, {}, "", "", {{"disk", "sda", "", "", "", "", ""}}, 0},
             R"("run":{"version":"1.0","commandLine":[],"parameters":{},)"
             R"("parts":[{"kind":"disk","name":"sda"}],"tests":0})",
             Source::kEngine, 0),
      sample("ATest", TestStarted{"S,d,e", "S", "d", "e", 2, 12.5},
             R"("test":{"name":"S,d,e","service":"S","device":"d","element":"e",)"
             R"("repetition":2,"estimate":12.5})",
             Source::kEngine, 0),
      sample("ATestWithoutEstimate", TestStarted{"S,d,e", "S", "d", "e", 1, 0},
             R"("test":{"name":"S,d,e","service":"S","device":"d","element":"e","repetition":1})",
             Source::kEngine, 0),
      sample("AStep", StepStarted{"Walking ones"}, R"("step":{"name":"Walking ones"})"),
      sample("AProgress", Progress{40}, R"("progress":{"percent":40.0})"),
      sample("AnOutputLine", OutputLine{Stream::kError, "x", true},
             R"("output":{"stream":"error","text":"x","part":true})", Source::kProvider),
      sample("AnEmptyOutputLine", OutputLine{Stream::kOutput, "", false},
             R"("output":{"stream":"output","text":""})", Source::kProvider),
      sample("ALogLine", LogLine{3, "x"}, R"("log":{"level":3,"text":"x"})"),
      sample("AMessage", Message{Severity::kWarning, "x", {"Do this."}},
             R"("message":{"severity":"warning","text":"x","actions":["Do this."]})"),
      sample("ABareMessage", Message{Severity::kInfo, "x", {}},
             R"("message":{"severity":"info","text":"x"})"),
      sample("AMeasurement", Measurement{"read", 1.5, "MB/s", 1.0, 2.0, "sda"},
             R"("measurement":{"name":"read","value":1.5,"unit":"MB/s","minimum":1.0,)"
             R"("maximum":2.0,"part":"sda"})"),
      sample("AMeasuredTruth", Measurement{"locked", true, "", {}, {}, ""},
             R"("measurement":{"name":"locked","value":true})"),
      sample("AMeasuredText", Measurement{"mode", std::string("fast"), "", {}, {}, ""},
             R"("measurement":{"name":"mode","value":"fast"})"),
      sample("ADiagnosis", Diagnosis{Verdict::kFail, "bit 5", "DIMM 2", {"Replace it."}},
             R"("diagnosis":{"verdict":"fail","text":"bit 5","part":"DIMM 2",)"
             R"("actions":["Replace it."]})"),
      sample("ABareDiagnosis", Diagnosis{Verdict::kPass, "", "", {}},
             R"("diagnosis":{"verdict":"pass","text":""})"),
      sample("AnError", Error{Cause::kCrashed, "x", 11, "P", "invokeMethod", {"libp.so"}},
             R"("error":{"cause":"crashed","text":"x","code":11,"provider":"P",)"
             R"("operation":"invokeMethod","libraries":["libp.so"]})"),
      sample("AnErrorOfAProcessor", Error{Cause::kCrashed, "x", 11, "", "", {}, 0},
             R"("error":{"cause":"crashed","text":"x","code":11,"processor":0})"),
      sample("ABareError", Error{Cause::kTimedOut, "x", 0, "", "", {}},
             R"("error":{"cause":"timedOut","text":"x"})", Source::kEngine),
      sample("AnEnd", Ended{Outcome::kFailed, "Fail", 2.5, "brief", "1 error", "1 error\nbit 5"},
             R"("end":{"outcome":"failed","text":"Fail","seconds":2.5,"brief":"brief",)"
             R"("remark":"1 error","record":"1 error\nbit 5"})",
             Source::kEngine),
      sample("TheRunsEnd", Ended{Outcome::kPassed, "", 0, "", "", ""},
             R"("end":{"outcome":"passed","seconds":0.0})", Source::kEngine, 0),
  };
}

}  // namespace

const std::vector<Sample>& sampleEvents() {
  static const std::vector<Sample> samples = make();
  return samples;
}

}  // namespace engine
