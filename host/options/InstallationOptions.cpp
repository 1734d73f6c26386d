#include "host/options/Grammar.h"

namespace host {
namespace {

/// What a technician who mends what the check has named wants to know.
constexpr const char* kAboutInstalling =
    "Lines with \"note:\" are no faults. Classes whose superclass is missing take what their "
    "provider sets;\nthe DMTF's CIM schema can be put into a folder of its own in schema/.\n"
    "A line FILE.mof NAMESPACE instances in a providers/*.registration file says in which "
    "namespace "
    "the\ninstances are that a MOF file declares; without one it is root/cimv2.\n\n";

}  // namespace

void Grammar::addList() {
  CLI::App* list = addCommand(Command::kList, "list", "List the tests, one a line");
  CLI::Option* raw = list->add_flag("--raw", m_options.raw,
                                    "The listing as one text, each test followed by \"|\"");
  list->add_flag("--long", m_options.isLong,
                 "With estimates, what the tests may disturb, and their settings")
      ->excludes(raw);
  list->add_flag("--json", m_options.json, "As one JSON text")->excludes(raw);
}

void Grammar::addResults() {
  CLI::App* results =
      addCommand(Command::kResults, "results", "Run a test and print its results at each level");
  results->add_option("TEST", m_options.tests, "A test's identifier, or its service's name")
      ->type_name("")
      ->required()
      ->expected(1);
  addLevel(*results, "Only this level: simple, immediate or extended");
}

void Grammar::addOthers() {
  CLI::App* inspect =
      addCommand(Command::kInspect, "inspect", "Print every instance of a class of the model");
  inspect->add_option("CLASS", m_options.className, "The name of the class")
      ->type_name("")
      ->required();
  CLI::App* providers =
      addCommand(Command::kProviders, "providers", "List the providers and what they offer");
  CLI::App* check = addCommand(Command::kCheck, "check",
                               "Read the whole installation and name every fault in it");
  check->footer(kAboutInstalling + check->get_footer());
  for (CLI::App* command : {providers, check}) {
    command->add_flag("--json", m_options.json, "As one JSON text");
  }
}

}  // namespace host
