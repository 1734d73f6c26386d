#include <cstdlib>

#include "fuzz/DataFileInput.h"
#include "results/ResultParser.h"

/// Whatever the vendor messages file holds: a table comes out whose records stand under their own
/// name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto table = parsed<diagsrunner::ResultParser>(
      data, size,
      [](const diagsrunner::ResultParser& parser) { return parser.GetVendorMessages(); });
  for (const auto& [key, record] : table) {
    if (key != record.testName) {
      std::abort();
    }
  }
  return 0;
}
