// A host on the runner itself: lists this machine's tests, runs and reports some:
//   host INSTALLATION [TEST...]
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "diagsrunner/DiagsRunner.h"
#include "substitute/cmpi.nsp/Bootstrap.h"

#if defined(_WIN32)
#define main wmain  // its arguments are wide; the framework takes UTF-8 everywhere
#endif

namespace {

namespace fs = std::filesystem;

void useRunner(const substitute::Framework& framework, const std::vector<fs::path>& tests) {
  DiagsRunner* const runner = DiagsRunner::GetDiagsRunner(framework.objectManager());
  std::cout << "tests: " << runner->EnumerateDiagTests("") << std::endl;

  boost::shared_ptr<NZELVOR20::ICIMNamespace> records = framework.makeReportNamespace();
  for (const fs::path& path : tests) {
    const std::string test = path.u8string();
    const std::string verdict = runner->Execute(test, "", records);  // it shows its progress itself
    std::cout << "verdict: " << verdict << std::endl;
    std::cout << runner->ExtendedResults(test, records) << std::endl;
  }
  DiagsRunner::FreeDiagsRunner();
}

}  // namespace

int main(int argc, fs::path::value_type** argv) {
  const std::vector<fs::path> arguments(argv, argv + argc);
  if (argc < 2) {
    std::cerr << "usage: host INSTALLATION [TEST...]\n";
    return 2;
  }
  try {
    substitute::Installation installation;
    installation.root = arguments[1].u8string();
    const substitute::Framework framework(installation);
    useRunner(framework, {arguments.begin() + 2, arguments.end()});
    return 0;
  } catch (const std::exception& failure) {
    std::cerr << "host: " << failure.what() << '\n';
    return 1;
  }
}
