#include <filesystem>
#include <fstream>
#include <iostream>

#include "fleet/page/Page.h"
#include "tests/fleet/page/SampleAnswers.h"
#include "tests/reports/html/HostileTexts.h"

namespace {

void print(const std::filesystem::path& folder, const char* name, const fleet::Answer& answer,
           const fleet::PageLimits& limits = {}) {
  std::ofstream file(folder / (std::string(name) + ".html"), std::ios::binary);
  fleet::writePage(answer, file, limits);
}

}  // namespace

/// Writes pages of sample answers into a folder, for a browser to look at.
int main(int argc, char** argv) {
  using namespace fleet::samples;
  if (argc != 2) {
    std::cerr << "usage: print_fleet_pages FOLDER\n";
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  std::filesystem::create_directories(folder);
  print(folder, "sound", soundFleet(3, 2));
  print(folder, "faulty", faultyFleet());
  print(folder, "large", largeFleet(10'000, 40));
  print(folder, "wide", largeFleet(60, 130));
  std::string all;
  for (const auto& hostile : reports::samples::hostileTexts()) all += hostile.text + "\n";
  fleet::PageLimits whole;
  whole.nameBytes = whole.textBytes = 10'000;
  print(folder, "hostile", answerOf(all), whole);
  return 0;
}
