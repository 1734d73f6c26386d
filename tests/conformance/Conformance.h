#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// The conformance providers, run through the object manager as any host runs a provider.
namespace conformance {

/// A function table of the interface: how large it is, and which of its slots have been called, one
/// bit for each 8 bytes.
struct Table {
  unsigned size = 0;
  std::uint64_t called = 0;
};

struct Outcome {
  unsigned done = 0;
  std::vector<std::string> failures;
  std::map<std::string, Table> tables;

  std::string failuresText() const;
};

/// Runs a group of checks of the provider of that edition (100, 200 or 210); with `threads`, all of
/// them on as many threads that the provider starts. Safe to call from several threads.
Outcome run(int edition, const std::string& group, unsigned threads = 0);

/// The groups, by name.
const std::vector<std::string>& groups();

}  // namespace conformance
