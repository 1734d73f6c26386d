#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "engine/plan/CimText.h"
#include "engine/plan/DryRun.h"
#include "engine/plan/PlanFile.h"
#include "engine/plan/Schedule.h"

namespace {

using namespace engine;

OfferedTest offered(const std::string& service, const std::string& device, double estimate) {
  OfferedTest test;
  test.identifier = service + ',' + device + ",it";
  test.service = service;
  test.device = device;
  test.estimate = estimate;
  const char* const types[] = {"uint8",  "sint64",   "real32",   "boolean",  "string",
                               "char16", "datetime", "uint16[]", "string[]", "real64[]"};
  for (const char* type : types) {
    test.settings.push_back({std::string("a ") + type, type, "", ""});
  }
  test.settings.push_back({"LoopControl", "uint16[]", "", ""});
  test.settings.push_back({"LoopControlParameter", "string[]", "", ""});
  test.settings.push_back({"NumberOfBytes", "uint64", "", ""});
  return test;
}

std::vector<OfferedTest> machine() {
  std::vector<OfferedTest> offer = {offered("A", "a", 1), offered("B", "b", 20),
                                    offered("C", "b", 0), offered("D", "d", 5),
                                    offered("E", "e", 7), offered("F", "f", 3)};
  offer[0].isMemoryTest = offer[3].isMemoryTest = true;
  offer[1].characteristics.isExclusive = true;
  offer[4].characteristics.isDestructive = true;
  offer[5].characteristics.isRisky = offer[5].characteristics.isInteractive = true;
  return offer;
}

void check(bool holds) {
  if (!holds) std::abort();
}

void checkRun(const PlannedRun& run, const std::vector<PlannedRun>& underWay) {
  for (const PlannedRun& other : underWay) check(mayOverlap(run, other));
  check(run.repetition >= 1 && run.number >= 1 && run.timeout.count() > 0 && run.estimate >= 0);
  for (const auto& [name, value] : *run.settings) {
    for (const SettingDeclaration& setting : run.test->settings) {
      if (setting.name == name) check(canonicalText(setting.type, value) == value);
    }
  }
}

/// Begins and ends some hundred runs, always the one that began last or first.
void follow(Schedule& schedule) {
  std::vector<PlannedRun> underWay;
  for (int i = 0; i < 200; ++i) {
    while (const auto run = schedule.next(Duration(0))) {
      checkRun(*run, underWay);
      underWay.push_back(*run);
    }
    check(underWay.size() == schedule.running() && underWay.size() <= kMostJobs);
    if (underWay.empty()) {
      check(schedule.isOver(Duration(0)));
      return;
    }
    const auto ended = i % 2 == 0 ? underWay.begin() : underWay.end() - 1;
    schedule.ended(ended->number, false);
    underWay.erase(ended);
  }
}

/// What was refused for the file names its place; for the machine, at least a reason.
bool hasPlace(const std::string& message) {
  return message.compare(0, 2, "p:") == 0 && message.size() > 6;
}

/// Whether it is small enough for all its runs to be gone through in no time.
bool isSmall(const Plan& plan) {
  for (const Group& group : plan.groups) {
    for (const PlannedTest& test : group.tests) {
      if (test.repeat > 1'000) return false;
    }
  }
  return true;
}

}  // namespace

/// Whatever is given for a plan: it is refused with its place, or refused for this machine, or its
/// runs keep to the rules.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Plan plan;
  try {
    plan = planFrom({reinterpret_cast<const char*>(data), size}, "p");
  } catch (const PlanError& error) {
    check(hasPlace(error.what()));
    return 0;
  }
  check(!plan.groups.empty());
  if (!isSmall(plan)) return 0;
  try {
    Schedule schedule(plan, machine());
    follow(schedule);
    for (const char c : dryRun(plan, machine())) {
      check(c == '\n' || static_cast<unsigned char>(c) >= ' ');
    }
  } catch (const PlanError& error) {
    check(*error.what() != '\0');
  }
  return 0;
}
