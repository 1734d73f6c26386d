#include "host/options/Grammar.h"
#include "host/options/Numbers.h"

namespace host {

void Grammar::addFleet() {
  constexpr std::uint64_t kMostLines = 1'000'000'000;
  CLI::App* fleet =
      addCommand(Command::kFleet, "fleet", "Put together what the streams of many machines say");
  fleet
      ->add_option("DIR|FILE", m_options.streams,
                   "Folders of OCP streams (*.jsonl, *.json), or the files themselves")
      ->type_name("")
      ->required();
  addText(*fleet, "--expect", m_options.expected, "The machines that are to answer, a name a line")
      ->type_name("FILE");
  fleet->add_flag("--json", m_options.json, "As one JSON text");
  addText(*fleet, "--html", m_options.fleetPage, "Write a page to be read")->type_name("FILE");
  fleet->add_option("--limit", m_options.most, "So many lines of each section (20)")
      ->type_name("N")
      ->transform(wholeNumber(1, kMostLines));
  fleet->add_flag("-v,--verbose", m_options.isVerbose, "Every line, and every test");
}

}  // namespace host
