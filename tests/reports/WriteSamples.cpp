#include <fstream>
#include <iostream>
#include <string>

#include "reports/junit/JUnitWriter.h"
#include "reports/ocp/OcpWriter.h"
#include "tests/reports/SampleRun.h"

namespace {

void writeAs(const std::string& format, const std::string& path,
             const std::vector<engine::Event>& events) {
  std::ofstream file(path, std::ios::binary);
  file << (format == "ocp" ? reports::written<reports::OcpWriter>(events)
                           : reports::written<reports::JUnitWriter>(events));
  if (!file.flush()) throw std::runtime_error(path + " cannot be written");
}

}  // namespace

/// write_sample_reports FOLDER FORMAT: a file for the sample run, and for each hostile text.
int main(int count, char** arguments) try {
  if (count != 3) return 2;
  const std::string folder = arguments[1];
  const std::string format = arguments[2];
  writeAs(format, folder + "/Run", reports::sampleRun());
  for (const reports::HostileText& text : reports::hostileTexts()) {
    writeAs(format, folder + "/" + text.name, reports::runOf(text.text));
  }
  writeAs(format, folder + "/Long", reports::longRun());
} catch (const std::exception& fault) {
  std::cerr << fault.what() << '\n';
  return 1;
}
