#include <cstdio>

#include "bench/ProcessFigures.h"
#include "bench/VendorMessagesFile.h"
#include "substitute/vorcore/system/Configuration.h"
#include "tests/support/DiagsRunnerAccess.h"

namespace {

constexpr std::size_t kBytes = 100 * 1000 * 1000;
constexpr double kMegabyte = 1e6;
constexpr double kMost = 3.0;

double textOf(const VendorMessages& table) {
  std::size_t size = 0;
  for (const auto& [key, record] : table) {
    size += key.size() + record.testName.size() + record.errorCode.size() + record.state.size();
    for (const std::string& message : record.messages) {
      size += message.size();
    }
    for (const auto& [priority, action] : record.actions) {
      size += priority.size() + action.size();
    }
  }
  return static_cast<double>(size);
}

}  // namespace

/// The peak memory of loading a 100 MB vendor messages file, beside the table's own text.
int main() {
  const VendorInstallation installation(kBytes);
  vorcore::Configuration configuration;
  configuration.root = installation.root();
  vorcore::configure(configuration);
  const double before = bench::peakMemory();
  DiagsRunner runner({});
  const double grown = bench::peakMemory() - before;
  const double text = textOf(DiagsRunnerAccess::vendorMessages(runner));
  const bool met = grown <= kMost * text;
  std::printf("table's text %.1f MB, peak memory %.1f MB: ratio %.3f  (goal: at most %.2f)%s\n",
              text / kMegabyte, grown / kMegabyte, grown / text, kMost, met ? "" : "  MISSED");
  return met ? 0 : 1;
}
