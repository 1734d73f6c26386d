#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>

#include "reports/recover/Recovery.h"
#include "reports/verify/OcpVerifier.h"

namespace {

/// A finding stands on one line of a terminal, whatever the stream holds.
void requireHarmless(const std::string& text) {
  constexpr std::size_t kLongest = 2000;
  if (text.size() > kLongest) std::abort();
  for (const char byte : text) {
    if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F) std::abort();
  }
}

/// What was made whole needs nothing more.
void recover(const std::string& stream) {
  std::istringstream in(stream);
  const reports::Recovery recovery = reports::recoveryOf(in, "f");
  std::string whole = stream.substr(0, recovery.kept);
  for (const std::string& line : recovery.closing) whole += line + "\n";
  std::istringstream again(whole);
  const reports::Recovery nothing = reports::recoveryOf(again, "f");
  if (nothing.dropped != 0 || !nothing.closing.empty()) std::abort();
}

}  // namespace

/// Whatever a file holds: it is verified with findings that can be shown, and it is refused or made
/// whole.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string stream(reinterpret_cast<const char*>(data), size);
  std::istringstream in(stream);
  reports::verifyOcp(in, "f",
                     [](const reports::Finding& finding) { requireHarmless(finding.text); });
  try {
    recover(stream);
  } catch (const std::runtime_error& refusal) {
    requireHarmless(refusal.what());
  }
  return 0;
}
