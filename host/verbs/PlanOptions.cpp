#include "host/verbs/PlanOptions.h"

#include <algorithm>
#include <chrono>
#include <string>

#include "engine/installation/PlanShelf.h"
#include "engine/plan/PlanFile.h"
#include "engine/plan/SettingValues.h"

namespace host {
namespace {

engine::PlannedTest named(const std::string& name) {
  engine::PlannedTest test;
  test.tests.name = name;
  return test;
}

/// Less is no time to do anything in.
constexpr engine::Duration kLeastTime = std::chrono::milliseconds(1);

void choose(std::optional<engine::Duration>& duration, const std::optional<std::string>& text,
            const char* option, engine::Duration least = kLeastTime) {
  if (!text) return;
  try {
    duration = engine::durationFrom(*text);
  } catch (const engine::PlanError& error) {
    throw engine::PlanError(std::string(option) + ": " + error.what());
  }
  if (*duration < least) {
    throw engine::PlanError(std::string(option) + ": \"" + *text + "\" is too short, expected " +
                            engine::textOf(least) + " or more");
  }
}

/// Tests that are named take the place of those of the plan, whose settings and limits stay.
void chooseTests(engine::Plan& plan, const Options& options) {
  const bool takesAll = options.all || (options.run.quick && options.run.plan.empty());
  if (options.tests.empty() && !takesAll) return;
  engine::Group group;
  if (options.tests.empty()) group.tests.push_back(named("*"));
  for (const std::string& name : options.tests) group.tests.push_back(named(name));
  plan.groups.assign(1, std::move(group));
}

void chooseTimes(engine::Plan& plan, const RunChoice& choice) {
  choose(plan.timeout, choice.timeout, "--timeout");
  choose(plan.deadline, choice.deadline, "--deadline");
  choose(plan.repeatFor, choice.repeatFor, "--for");
  std::optional<engine::Duration> grace;
  choose(grace, choice.grace, "--grace", engine::Duration(0));
  plan.grace = grace.value_or(plan.grace);
}

void chooseCourse(engine::Plan& plan, const RunChoice& choice) {
  if (choice.repeat) plan.repeat = choice.repeat;
  plan.jobs = choice.jobs.value_or(plan.jobs);
  if (choice.shuffle) plan.shuffle = choice.shuffle;
  plan.untilFailure = plan.untilFailure || choice.untilFailure;
  if (choice.quick) plan.quick = plan.quick.value_or(engine::kDefaultQuick);
  plan.allowDestructive = plan.allowDestructive || choice.allowDestructive;
  plan.allowDisruptive = plan.allowDisruptive || choice.allowDisruptive;
}

}  // namespace

engine::Plan planOf(const Options& options) {
  const RunChoice& choice = options.run;
  engine::Plan plan;
  if (!choice.plan.empty()) plan = engine::openPlan(choice.plan, engine::shelfOf(options.root));
  chooseTests(plan, options);
  for (const std::string& name : choice.excluded) plan.excluded.push_back({name, {}});
  for (const std::string& text : choice.settings) {
    plan.settings.push_back(engine::settingTextFrom(text));
  }
  chooseTimes(plan, choice);
  chooseCourse(plan, choice);
  return plan;
}

}  // namespace host
