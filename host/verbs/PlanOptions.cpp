#include "host/verbs/PlanOptions.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

#include "engine/plan/PlanFile.h"
#include "engine/plan/SettingValues.h"

namespace host {
namespace {

namespace fs = std::filesystem;

/// A pipe or a device might never come to an end, or never begin.
void refuseNoFile(const std::string& path, fs::file_type type) {
  if (type == fs::file_type::regular) return;
  const char* const what = type == fs::file_type::not_found   ? "there is no such file"
                           : type == fs::file_type::directory ? "this is a folder, no plan"
                           : type == fs::file_type::none || type == fs::file_type::unknown
                               ? "cannot be read"
                               : "this is a pipe or a device; a plan is a file";
  throw engine::PlanError(path + ": " + what);
}

/// No plan is longer; one byte more tells that it is.
std::string readFile(const std::string& path) {
  std::error_code failure;
  refuseNoFile(path, fs::status(fs::u8path(path), failure).type());
  std::ifstream file(fs::u8path(path), std::ios::binary);
  std::string text(engine::kLongestPlan + 1, '\0');
  file.read(&text[0], static_cast<std::streamsize>(text.size()));
  if (file.bad() || !file.is_open()) throw engine::PlanError(path + ": cannot be read");
  text.resize(static_cast<std::size_t>(file.gcount()));
  return text;
}

engine::PlanShelf shelfOf(const std::string& root) {
  engine::PlanShelf shelf;
  shelf.read = readFile;
  shelf.folder = (fs::u8path(root) / "plans").u8string();
  std::error_code failure;
  for (fs::directory_iterator it(fs::u8path(shelf.folder), failure), end; !failure && it != end;
       it.increment(failure)) {
    if (it->path().extension() == ".toml") shelf.names.push_back(it->path().stem().u8string());
  }
  std::sort(shelf.names.begin(), shelf.names.end());
  return shelf;
}

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
  if (!choice.plan.empty()) plan = engine::openPlan(choice.plan, shelfOf(options.root));
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
