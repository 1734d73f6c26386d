#include <cstdint>
#include <limits>

#include "engine/plan/Plan.h"
#include "host/options/Grammar.h"
#include "host/options/Numbers.h"

namespace host {
namespace {

/// The expected duration in seconds has to fit into 32 bits.
constexpr unsigned kMostMinutes = std::numeric_limits<std::uint32_t>::max() / 60;

}  // namespace

void Grammar::addRun() {
  CLI::App* run = addCommand(Command::kRun, "run", "Run tests and print their verdicts");
  CLI::Option* tests = run->add_option(
      "TEST", m_options.tests,
      "A test's identifier, its service's name, its device, or a pattern with * and ?");
  tests->type_name("");
  CLI::Option* all = run->add_flag("--all", m_options.all, "Run every test");
  all->excludes(tests);
  run->add_flag("--ignore-providers", m_options.ignoreProviders,
                "A provider that cannot be used, whose tests are missing then, is no failure")
      ->needs(all);
  addLevel(*run,
           "simple, immediate (the default), or extended (the record data follows the verdict)");
  m_minutesOption =
      run->add_option("--threaded", m_minutes,
                      "Run one test, then once more on a thread of its own, with an estimated "
                      "percentage for a run of MINUTES")
          ->type_name("MINUTES")
          ->transform(wholeNumber(0, kMostMinutes))
          ->excludes(all);
  addRunChoice(*run);
  addFiles(*run);
}

void Grammar::addDetail(CLI::App& command) {
  command.add_flag("-q,--quiet", m_options.isQuiet, "Only verdicts that are no pass, and the sum");
  command
      .add_flag("-v,--verbose", m_options.isVerbose,
                "Output, log, messages and measurements of the tests too")
      ->excludes("--quiet");
}

void Grammar::addRunChoice(CLI::App& run) {
  RunChoice& choice = m_options.run;
  addText(run, "--plan", choice.plan, "A plan: quick, standard, burn-in, or a file")
      ->type_name("PLAN");
  run.add_flag("--quick", choice.quick, "Only what fits into two minutes by the estimates");
  run.add_option("--exclude", choice.excluded, "Leave these tests out, named like TEST")
      ->type_name("TEST")
      ->allow_extra_args(false);
  m_lists.push_back(&choice.excluded);
  run.add_option("--set", choice.settings, "A setting of the tests that have it")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  m_lists.push_back(&choice.settings);
  run.add_flag("--allow-destructive", choice.allowDestructive, "Also tests that may destroy data");
  run.add_flag("--allow-disruptive", choice.allowDisruptive,
               "Also tests that may disturb the machine in operation");
  addText(
      run, "--timeout", choice.timeout,
      "What each test may take: 90s, 10m, 1h30m; else three times its estimate, and at least 5m")
      ->type_name("TIME");
  addText(run, "--deadline", choice.deadline, "What the whole run may take")->type_name("TIME");
  addText(run, "--grace", choice.grace,
          "How long a test may take to end, and to clean up, before it is ended (10s)")
      ->type_name("TIME");
  run.add_option("--repeat", choice.repeat, "Everything so many times")
      ->type_name("N")
      ->transform(wholeNumber(1, engine::kMostRepetitions));
  addText(run, "--for", choice.repeatFor, "Everything again and again, for so long")
      ->type_name("TIME");
  run.add_flag("--until-failure", choice.untilFailure,
               "Begin nothing more after a failure; without --repeat and --for, go on for ever");
  run.add_option("--shuffle", choice.shuffle, "In another order, the same for the same number")
      ->type_name("SEED")
      ->transform(wholeNumber(0, std::numeric_limits<std::uint64_t>::max()));
  run.add_option("--jobs", choice.jobs,
                 "So many tests at a time, where they do not disturb each other")
      ->type_name("N")
      ->transform(wholeNumber(1, engine::kMostJobs));
  run.add_flag("--dry-run", choice.dryRun, "Only say what would run, and how long it takes")
      ->excludes(m_minutesOption);
  addDetail(run);
  run.add_flag("--no-history", m_options.noHistory, "Do not keep the run");
}

}  // namespace host
