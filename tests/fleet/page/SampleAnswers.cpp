#include "tests/fleet/page/SampleAnswers.h"

#include <sstream>

#include "fleet/page/Page.h"

namespace fleet::samples {
namespace {

std::string numbered(const char* name, std::uint32_t number, std::size_t digits) {
  const std::string text = std::to_string(number);
  return name + std::string(digits > text.size() ? digits - text.size() : 0, '0') + text;
}

Machine machineOf(std::uint32_t number, std::uint32_t tests) {
  Machine machine;
  machine.name = numbered("node-", number, 5);
  machine.serial = numbered("AC-40-", 118000 + number, 6);
  machine.model = "Aurora T40";
  machine.firmware = number % 2 == 0 ? "F22" : "F21";
  machine.source = "/var/lib/streams/" + machine.name + ".jsonl";
  machine.began = engine::Time(std::chrono::microseconds(1'795'000'000'000'000));
  machine.hasEnded = true;
  machine.streams = 1;
  machine.verdict = Verdict::kPassed;
  machine.verdicts.assign(tests, Verdict::kPassed);
  return machine;
}

void setResult(Answer& answer, std::uint32_t machine, std::uint32_t test, Verdict verdict) {
  answer.machines[machine].verdicts[test] = verdict;
  answer.machines[machine].verdict = std::max(answer.machines[machine].verdict, verdict);
}

void addFault(Answer& answer, std::uint32_t machine, std::uint32_t test) {
  setResult(answer, machine, test, Verdict::kFailed);
  answer.findings.push_back({machine, test, Verdict::kFailed, "DIMM_A2", "memory",
                             "Kestrel KS-16G-5600", numbered("K118", machine, 5), "P0 channel A",
                             "3 memory errors, stuck bit 17",
                             "Replace the memory module DIMM_A2."});
}

void cutOff(Answer& answer, std::uint32_t machine, std::uint32_t test) {
  answer.machines[machine].hasEnded = false;
  setResult(answer, machine, test, Verdict::kUnfinished);
  answer.silent.push_back({answer.machines[machine].name, machine, test,
                           "its stream ends in the middle of " + answer.tests[test].name});
}

void addSlow(Answer& answer, std::uint32_t machine, std::uint32_t test) {
  Slow slow;
  slow.machine = machine;
  slow.test = test;
  slow.device = "nvme0";
  slow.model = "Halden HX 2 TB";
  slow.serial = numbered("HX23-", machine, 5);
  slow.measurement = "Sequential read";
  slow.unit = "MB/s";
  slow.value = 2310;
  slow.median = 3480;
  slow.ratio = slow.value / slow.median;
  slow.deviation = 92;
  slow.score = 12.7;
  slow.peers = static_cast<std::uint32_t>(answer.machines.size()) - 1;
  answer.slow.push_back(slow);
}

/// The group of all findings, counted against the rest.
Group groupOfAll(const Answer& answer, GroupKind kind, const std::string& key,
                 const std::string& of) {
  Group group;
  group.kind = kind;
  group.key = key;
  group.of = of;
  group.chance = 3.1e-6;
  for (std::uint32_t i = 0; i < answer.findings.size(); ++i) {
    group.findings.push_back(i);
    group.machines.push_back(answer.findings[i].machine);
  }
  group.failing = static_cast<std::uint32_t>(group.machines.size());
  group.all = group.failing + 2;
  group.rest = static_cast<std::uint32_t>(answer.machines.size()) - group.all;
  return group;
}

}  // namespace

std::string pageOf(const Answer& answer, const PageLimits& limits) {
  std::ostringstream out;
  writePage(answer, out, limits);
  return out.str();
}

Answer soundFleet(std::uint32_t machines, std::uint32_t tests) {
  Answer answer;
  for (std::uint32_t i = 1; i <= tests; ++i) {
    answer.tests.push_back({numbered("Test ", i, 2), {}});
  }
  for (std::uint32_t i = 1; i <= machines; ++i) answer.machines.push_back(machineOf(i, tests));
  answer.totals.streams = machines;
  return answer;
}

Answer faultyFleet() {
  Answer answer = soundFleet(40, 4);
  for (const std::uint32_t machine : {6U, 16U, 36U}) addFault(answer, machine, 1);
  setResult(answer, 9, 2, Verdict::kWarned);
  setResult(answer, 11, 3, Verdict::kSkipped);
  answer.machines[12].verdicts[3] = Verdict::kNone;
  cutOff(answer, 20, 2);
  addSlow(answer, 30, 3);
  answer.silent.push_back({"node-00041", kNowhere, 0, "no stream"});
  answer.groups.push_back(groupOfAll(answer, GroupKind::kPart, "Kestrel KS-16G-5600", "memory"));
  answer.groups.push_back(groupOfAll(answer, GroupKind::kTest, "Test 02", ""));
  answer.complaints.push_back({"streams/odd.jsonl", 7, "a measurement without a value", false});
  answer.complaints.push_back({"streams/torn.jsonl", 12, "it is no JSON", true});
  answer.totals.streams = 41;
  answer.totals.leftOut = 1;
  return answer;
}

Answer largeFleet(std::uint32_t machines, std::uint32_t tests) {
  Answer answer = soundFleet(machines, tests);
  for (std::uint32_t i = 0; i < machines; ++i) {
    if (i % 50 == 7) addFault(answer, i, i % tests);
    if (i % 100 == 33) cutOff(answer, i, tests / 2);
    if (i % 100 == 66) addSlow(answer, i, i % tests);
  }
  answer.groups.push_back(groupOfAll(answer, GroupKind::kPart, "Kestrel KS-16G-5600", "memory"));
  answer.groups.push_back(groupOfAll(answer, GroupKind::kFirmware, "F22", ""));
  return answer;
}

Answer answerOf(const std::string& text) {
  Answer answer = soundFleet(2, 1);
  answer.tests[0].name = text;
  Machine& machine = answer.machines[0];
  for (std::string* const field :
       {&machine.name, &machine.serial, &machine.model, &machine.firmware, &machine.source}) {
    *field = text;
  }
  setResult(answer, 0, 0, Verdict::kFailed);
  answer.findings.push_back({0, 0, Verdict::kFailed, text, text, text, text, text, text, text});
  Slow slow{0, 0, Unlike::kDifferent, text, text, text, text, text, 1, 2, 0.5, 0.1, 9, 5, 3};
  answer.slow.push_back(slow);
  answer.groups.push_back({GroupKind::kBatch, text, text, 1, 1, 0, 1, 0.5, {0}, {0}});
  answer.groups.push_back({GroupKind::kTest, text, text, 1, 1, 0, 1, 1, {0}, {0}});
  answer.silent.push_back({text, 0, 0, text});
  answer.silent.push_back({text, kNowhere, 0, text});
  answer.complaints.push_back({text, 3, text, true});
  answer.components = {{1, 1, 0}, {1, 1, 1}};
  return answer;
}

}  // namespace fleet::samples
