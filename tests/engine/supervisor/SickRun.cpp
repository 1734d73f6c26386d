#include "tests/engine/supervisor/SickRun.h"

#include <set>

#include "tests/engine/supervisor/SickEnvironment.h"

namespace sick {

using namespace engine;

void Events::take(const Event& event) {
  all.push_back(event);
  if (onEvent) onEvent(event);
}

std::string Events::disorder() const {
  std::set<std::uint64_t> open;
  std::set<std::uint64_t> closed;
  for (std::size_t i = 0; i < all.size(); ++i) {
    const Event& event = all[i];
    const std::string place = "event " + std::to_string(i) + ": ";
    if (event.sequence != i) return place + "its number is another";
    if ((i == 0) != std::holds_alternative<RunStarted>(event.body)) return place + "run";
    if (event.test == 0) continue;
    if (std::holds_alternative<TestStarted>(event.body) && !open.insert(event.test).second) {
      return place + "begins once more";
    }
    if (open.count(event.test) == 0) return place + "before its test begins";
    if (closed.count(event.test) != 0) return place + "behind the end of its test";
    if (std::holds_alternative<Ended>(event.body)) closed.insert(event.test);
  }
  if (open != closed) return "a test without an end";
  const bool hasEnd =
      !all.empty() && all.back().test == 0 && std::holds_alternative<Ended>(all.back().body);
  return hasEnd ? "" : "no end of the run";
}

Sickness::Sickness(const std::string& text) { setVariable("SICKNESS", text); }
Sickness::~Sickness() { setVariable("SICKNESS", ""); }

/// Time for a flood of output, and to run out of memory in, on a machine that has others to serve.
constexpr int kListSeconds = 5 * DIAGS_SLOWNESS;

Engine makeEngine() {
  EngineOptions options;
  options.installation.root = DIAGS_SICK_INSTALLATION;
  options.installation.schemaCache = false;
  options.worker = DIAGS_WORKER;
  options.listSeconds = kListSeconds;
  options.listGrace = 0.5;
  return Engine(options);
}

Plan bothTests(int timeout, int grace) {
  Plan plan;
  Group group;
  for (const char* const name : {"SICK Test", "SOUND Test"}) {
    PlannedTest test;
    test.tests.name = name;
    if (group.tests.empty()) test.timeout = Duration(timeout);
    group.tests.push_back(test);
  }
  plan.groups.push_back(group);
  plan.grace = Duration(grace);
  return plan;
}

std::vector<OfferedTest> offer() {
  setVariable("SICKNESS", "");
  return makeEngine().list(Detail::kFacts).tests;
}

std::size_t leftProcesses() {
  for (int i = 0; i < 200 && countMarked() > 0; ++i) pauseBriefly();
  return countMarked();
}

}  // namespace sick
