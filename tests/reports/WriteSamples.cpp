#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "reports/junit/JUnitWriter.h"
#include "reports/metrics/MetricsWriter.h"
#include "reports/ocp/OcpWriter.h"
#include "tests/reports/SampleRun.h"

namespace {

std::string textAs(const std::string& format, const std::vector<engine::Event>& events) {
  if (format == "ocp") return reports::written<reports::OcpWriter>(events);
  if (format == "junit") return reports::written<reports::JUnitWriter>(events);
  if (format == "metrics") return reports::written<reports::MetricsWriter>(events);
  throw std::runtime_error("there is no format " + format);
}

void writeAs(const std::string& format, const std::string& path,
             const std::vector<engine::Event>& events) {
  std::ofstream file(path, std::ios::binary);
  file << textAs(format, events);
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
  writeAs(format, folder + "/Measuring", reports::measuringRun());
} catch (const std::exception& fault) {
  std::cerr << fault.what() << '\n';
  return 1;
}
