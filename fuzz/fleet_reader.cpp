#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "fleet/reading/StreamReader.h"

namespace {

/// A complaint stands on one line of a terminal, whatever the stream holds.
void requireHarmless(const fleet::Complaint& complaint) {
  constexpr std::size_t kLongest = 2000;
  if (complaint.text.size() > kLongest) std::abort();
  for (const char byte : complaint.text) {
    if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F) std::abort();
  }
}

fleet::StreamResult read(const std::string& stream, fleet::Tables& tables) {
  std::istringstream in(stream);
  fleet::Scratch scratch;
  return fleet::StreamReader(tables, scratch).read(in, "f");
}

/// What is left out says so; what counts has names, and each test once.
void requireSense(const fleet::StreamResult& result, const fleet::Tables& tables) {
  if (result.isLeftOut && result.complaints.empty()) std::abort();
  for (const fleet::Complaint& complaint : result.complaints) requireHarmless(complaint);
  for (const fleet::Outcome& outcome : result.outcomes) {
    if (outcome.verdict == fleet::Verdict::kNone) std::abort();
    if (tables.names.textOf(outcome.test).empty()) std::abort();
  }
  if (result.values.size() > result.measurements) std::abort();
  if (!result.isLeftOut && !result.hasEnded && result.complaints.empty()) std::abort();
}

}  // namespace

/// Whatever a file holds: it is read or left out with a complaint, and says the same again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string stream(reinterpret_cast<const char*>(data), size);
  fleet::Tables tables;
  const fleet::StreamResult once = read(stream, tables);
  requireSense(once, tables);
  const fleet::StreamResult again = read(stream, tables);
  if (once.outcomes.size() != again.outcomes.size()) std::abort();
  if (once.values.size() != again.values.size()) std::abort();
  return 0;
}
