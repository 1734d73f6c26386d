#include <filesystem>
#include <fstream>
#include <iostream>

#include "tests/reports/html/SampleRuns.h"

namespace {

void print(const std::filesystem::path& folder, const char* name, const std::string& page) {
  std::ofstream file(folder / (std::string(name) + ".html"), std::ios::binary);
  file << page;
}

}  // namespace

/// Writes pages of sample runs into a folder, for a browser to look at.
int main(int argc, char** argv) {
  using namespace reports::samples;
  if (argc != 2) {
    std::cerr << "usage: print_pages FOLDER\n";
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  std::filesystem::create_directories(folder);
  print(folder, "sound", pageOf(soundRun()));
  print(folder, "faulty", pageOf(faultyRun()));
  print(folder, "burn-in", pageOf(burnIn()));
  print(folder, "cut-off", pageOf(cutOffRun()));
  std::string all;
  for (const HostileText& hostile : hostileTexts()) all += hostile.text + "\n";
  print(folder, "hostile", pageOf(runOf(all)));
  return 0;
}
