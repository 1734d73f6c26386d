#include <expat.h>

#include <cstdio>
#include <filesystem>
#include <memory>

#include "bench/RatioReporter.h"
#include "bench/VendorMessagesFile.h"
#include "diagsrunner/DiagsRunner.h"
#include "substitute/vorcore/system/Configuration.h"

namespace {

constexpr std::size_t kBytes = 100 * 1000 * 1000;

/// What a runner does when it is built: read the file, parse it, keep the table.
void loadIntoRunner(benchmark::State& state) {
  std::unique_ptr<DiagsRunner> runner;
  for (auto iteration : state) {
    runner = std::make_unique<DiagsRunner>(nullptr);
  }
}

void ignoreStart(void*, const XML_Char*, const XML_Char**) {}
void ignoreEnd(void*, const XML_Char*) {}
void ignoreText(void*, const XML_Char*, int) {}

/// Reading the same file and parsing it with handlers that do nothing.
void parseWithEmptyHandlers(benchmark::State& state, const std::string& file) {
  for (auto iteration : state) {
    std::FILE* input = std::fopen(file.c_str(), "r");
    const std::size_t size = std::filesystem::file_size(file);
    const std::unique_ptr<char[]> text(new char[size]);
    const std::size_t got = std::fread(text.get(), 1, size, input);
    std::fclose(input);
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetElementHandler(parser, ignoreStart, ignoreEnd);
    XML_SetCharacterDataHandler(parser, ignoreText);
    if (XML_Parse(parser, text.get(), static_cast<int>(got), 1) != XML_STATUS_OK) {
      state.SkipWithError("the file is not well-formed");
    }
    XML_ParserFree(parser);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const VendorInstallation installation(kBytes);
  vorcore::Configuration configuration;
  configuration.root = installation.root();
  vorcore::configure(configuration);
  benchmark::RegisterBenchmark("load 100 MB into a runner", loadIntoRunner)
      ->Unit(benchmark::kMillisecond)
      ->Iterations(1);
  benchmark::RegisterBenchmark("Expat with empty handlers", parseWithEmptyHandlers,
                               installation.file())
      ->Unit(benchmark::kMillisecond)
      ->Iterations(1);
  return runWithGoals(argc, argv,
                      {{"loading 100 MB of vendor messages / Expat with empty handlers",
                        "load 100 MB into a runner", "Expat with empty handlers", 1, 2.0}});
}
