#include <cstdlib>

#include "exclusion/FilterDiagsParser.h"
#include "fuzz/DataFileInput.h"

/// Whatever the exclusion matrix holds: the same matrix comes out each time.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto matrix = [](const diagsrunner::FilterDiagsParser& parser) {
    return parser.GetExclusionMatrix();
  };
  if (parsed<diagsrunner::FilterDiagsParser>(data, size, matrix) !=
      parsed<diagsrunner::FilterDiagsParser>(data, size, matrix)) {
    std::abort();
  }
  return 0;
}
