#include <cstdlib>

#include "exclusion/ExcludeParser.h"
#include "fuzz/DataFileInput.h"

/// Whatever the list of excluded tests holds: the same names come out each time.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto names = [](const diagsrunner::ExcludeParser& parser) {
    return parser.GetExcludedTests();
  };
  if (parsed<diagsrunner::ExcludeParser>(data, size, names) !=
      parsed<diagsrunner::ExcludeParser>(data, size, names)) {
    std::abort();
  }
  return 0;
}
