#include "fleet/show/Json.h"

#include "engine/events/Timestamp.h"
#include "text/JsonText.h"

namespace fleet {
namespace {

using text::JsonText;

std::uint64_t whole(std::uint64_t number) { return number; }

void addCounts(JsonText& json, const std::uint32_t* verdicts) {
  for (std::size_t i = 0; i < kVerdicts; ++i) {
    json.add(nameOf(static_cast<Verdict>(i)), whole(verdicts[i]));
  }
}

void addTotals(JsonText& json, const Answer& answer) {
  const Totals& totals = answer.totals;
  json.object("totals").add("streams", totals.streams).add("leftOut", totals.leftOut);
  json.add("measurements", totals.measurements).add("compared", totals.series);
  json.object("machines");
  for (std::size_t i = 0; i < kVerdicts; ++i) {
    json.add(nameOf(static_cast<Verdict>(i)), totals.machines[i]);
  }
  json.endObject().endObject();
}

void addTests(JsonText& json, const Answer& answer) {
  json.list("tests");
  for (const Test& test : answer.tests) {
    json.object().add("name", test.name).object("machines");
    addCounts(json, test.verdicts);
    json.endObject().endObject();
  }
  json.endList();
}

void addMachines(JsonText& json, const Answer& answer) {
  json.list("machines");
  for (const Machine& machine : answer.machines) {
    json.object().add("name", machine.name).addIfAny("serial", machine.serial);
    json.addIfAny("model", machine.model).addIfAny("firmware", machine.firmware);
    json.add("source", machine.source).add("began", engine::timestampOf(machine.began));
    json.add("ended", machine.hasEnded).add("clockTrusted", machine.isClockTrusted);
    json.add("streams", whole(machine.streams)).add("verdict", nameOf(machine.verdict));
    json.list("verdicts");
    for (const Verdict verdict : machine.verdicts) json.add({}, nameOf(verdict));
    json.endList().endObject();
  }
  json.endList();
}

void addFindings(JsonText& json, const Answer& answer) {
  json.list("findings");
  for (const Finding& finding : answer.findings) {
    json.object().add("machine", whole(finding.machine));
    if (finding.test != kNowhere) json.add("test", whole(finding.test));
    json.add("verdict", nameOf(finding.verdict)).addIfAny("part", finding.part);
    json.addIfAny("partKind", finding.partKind).addIfAny("partModel", finding.partModel);
    json.addIfAny("partSerial", finding.partSerial).addIfAny("partPlace", finding.partPlace);
    json.addIfAny("text", finding.text).addIfAny("action", finding.action).endObject();
  }
  json.endList();
}

void addNumbers(JsonText& json, const char* name, const std::vector<std::uint32_t>& numbers) {
  json.list(name);
  for (const std::uint32_t number : numbers) json.add({}, whole(number));
  json.endList();
}

void addGroups(JsonText& json, const Answer& answer) {
  json.list("groups");
  for (const Group& group : answer.groups) {
    json.object().add("kind", nameOf(group.kind)).add("key", group.key);
    json.addIfAny("of", group.of).add("failing", whole(group.failing));
    json.add("all", whole(group.all));
    if (group.kind != GroupKind::kTest) {
      json.add("restFailing", whole(group.restFailing)).add("rest", whole(group.rest));
      json.add("chance", group.chance);
    }
    addNumbers(json, "machines", group.machines);
    addNumbers(json, "findings", group.findings);
    json.endObject();
  }
  json.endList();
}

void addSlow(JsonText& json, const Answer& answer) {
  json.list("slow");
  for (const Slow& slow : answer.slow) {
    json.object().add("machine", whole(slow.machine)).add("test", whole(slow.test));
    json.add("is", slow.unlike == Unlike::kSlow ? "slow" : "different");
    json.addIfAny("device", slow.device).addIfAny("model", slow.model);
    json.addIfAny("serial", slow.serial).add("measurement", slow.measurement);
    json.addIfAny("unit", slow.unit).add("value", slow.value).add("median", slow.median);
    json.add("ratio", slow.ratio).add("deviation", slow.deviation).add("score", slow.score);
    json.add("peers", whole(slow.peers)).add("measurements", whole(slow.measurements)).endObject();
  }
  json.endList();
}

void addSilent(JsonText& json, const Answer& answer) {
  json.list("silent");
  for (const Silent& silent : answer.silent) {
    json.object().add("name", silent.name);
    if (silent.machine != kNowhere) json.add("machine", whole(silent.machine));
    json.add("answered", whole(silent.answered)).add("why", silent.why).endObject();
  }
  json.endList();
}

void addComplaints(JsonText& json, const Answer& answer) {
  json.list("complaints");
  for (const Complaint& complaint : answer.complaints) {
    json.object().addIfAny("file", complaint.file);
    if (complaint.line != 0) json.add("line", complaint.line);
    json.add("text", complaint.text).add("leftOut", complaint.isLeftOut).endObject();
  }
  json.endList().add("moreComplaints", answer.moreComplaints);
}

void addComponents(JsonText& json, const Answer& answer) {
  json.list("fleets");
  for (const Component& component : answer.components) {
    json.object().add("machines", whole(component.machines)).add("tests", whole(component.tests));
    json.add("example", whole(component.example)).endObject();
  }
  json.endList();
}

}  // namespace

std::string jsonOf(const Answer& answer) {
  JsonText json;
  json.object();
  addTotals(json, answer);
  addTests(json, answer);
  addMachines(json, answer);
  addFindings(json, answer);
  addGroups(json, answer);
  addSlow(json, answer);
  addSilent(json, answer);
  addComplaints(json, answer);
  addComponents(json, answer);
  return json.endObject().text();
}

}  // namespace fleet
