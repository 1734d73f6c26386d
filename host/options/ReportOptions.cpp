#include "host/options/Grammar.h"
#include "host/options/Numbers.h"
#include "host/options/Vocabulary.h"

namespace host {
namespace {

/// More than there can be in a history.
constexpr std::uint64_t kMostRuns = 1'000'000'000;

}  // namespace

void Grammar::addRedact(CLI::App& command) {
  command.add_flag("--redact", m_options.redact,
                   "Without serial numbers, hardware addresses and the host's name");
}

void Grammar::addFiles(CLI::App& command) {
  ReportFiles& files = m_options.files;
  addText(command, "--events", files.events, "Write every event to this file; - is standard output")
      ->type_name("FILE");
  addText(command, "--jsonl", files.jsonLines, "Write OCP Test & Validation JSON lines")
      ->type_name("FILE");
  addText(command, "--junit", files.junit, "Write a JUnit document")->type_name("FILE");
  addText(command, "--html", files.html, "Write a page to be read")->type_name("FILE");
  addText(command, "--metrics", files.metrics,
          "Write metrics for Prometheus, at the end, in one go")
      ->type_name("FILE");
  addRedact(command);
  addText(command, "--state", m_options.state, "Where runs are kept")->type_name("DIR");
}

void Grammar::addReports() {
  CLI::App* report =
      addCommand(Command::kReport, "report", "Show a run that was kept, or write it in any format");
  addText(*report, "RUN", m_options.kept, "Its identifier, or last (the default), last-1 ...")
      ->type_name("");
  addLevel(*report, "How verdicts are shown: simple, immediate (the default), or extended");
  addDetail(*report);
  addFiles(*report);
}

void Grammar::addHistory() {
  CLI::App* history = addCommand(Command::kHistory, "history", "List the runs that were kept");
  history->add_option("--diff", m_options.differ, "What changed from one run to another")
      ->type_name("RUN")
      ->expected(2);
  m_lists.push_back(&m_options.differ);
  addText(*history, "--trend", m_options.trend, "How a test's measurements went over the runs")
      ->type_name("TEST")
      ->excludes("--diff");
  addText(*history, "--measurement", m_options.measurement, "Only this one of them")
      ->type_name("NAME")
      ->needs("--trend");
  addText(*history, "--html", m_options.trendPage,
          "Write the trend as a page; - is standard output")
      ->type_name("FILE")
      ->needs("--trend");
  history->add_option("-n,--most", m_options.most, "So many of the newest runs (20)")
      ->type_name("N")
      ->transform(wholeNumber(1, kMostRuns))
      ->excludes("--diff")
      ->excludes("--trend");
  history->add_flag("--json", m_options.json, "As one JSON text");
  addRedact(*history);
  addText(*history, "--state", m_options.state, "Where runs are kept")->type_name("DIR");
}

void Grammar::addStreams() {
  CLI::App* verify =
      addCommand(Command::kVerify, "verify", "Hold OCP streams to their rules, line by line");
  CLI::App* recover =
      addCommand(Command::kRecover, "recover", "Make streams whole that were cut off");
  for (CLI::App* command : {verify, recover}) {
    command->add_option("FILE", m_options.streams, "The file of a stream")
        ->type_name("")
        ->required();
  }
  m_lists.push_back(&m_options.streams);
}

// Hidden: packages call it, and those whose shell is set up by hand.
void Grammar::addCompletion() {
  CLI::App* completion =
      addCommand(Command::kCompletion, "completion", "Write a shell's completion of this command");
  completion->group("");
  completion->add_option("SHELL", m_options.shell, "bash or zsh")
      ->type_name("")
      ->required()
      ->check(CLI::IsMember(shellNames()));
}

// Hidden: what is built calls it.
void Grammar::addManual() {
  addCommand(Command::kManual, "manual", "Write what each command takes, for the manual page")
      ->group("");
}

}  // namespace host
